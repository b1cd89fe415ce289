#include "HandleCount.h"

#include <fcntl.h>

#include <filesystem>
#include <iterator>

unsigned long handleCount() {
  const std::filesystem::directory_iterator entries("/proc/self/fd");
  return static_cast<unsigned long>(std::distance(begin(entries), end(entries)));
}

bool isInherited(std::intptr_t handle) { return (::fcntl(static_cast<int>(handle), F_GETFD) & FD_CLOEXEC) == 0; }
