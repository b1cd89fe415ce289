#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// SharedMemory is named shared memory of this size, as long as it lives.
class SharedMemory {
 public:
  SharedMemory(const char* name, std::size_t size);
  ~SharedMemory();

 private:
  std::string name_;
  std::intptr_t handle_;
};
