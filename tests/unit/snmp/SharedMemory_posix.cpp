#include "SharedMemory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

SharedMemory::SharedMemory(const char* name, std::size_t size)
    : name_(std::string("/") + name), handle_(::shm_open(name_.c_str(), O_RDWR | O_CREAT, 0600)) {
  if (::ftruncate(static_cast<int>(handle_), static_cast<off_t>(size)) != 0) name_.clear();
}

SharedMemory::~SharedMemory() {
  ::close(static_cast<int>(handle_));
  ::shm_unlink(name_.c_str());
}
