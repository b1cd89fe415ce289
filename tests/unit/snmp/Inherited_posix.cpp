#include "Inherited.h"

#include <fcntl.h>

bool isInherited(std::intptr_t handle) { return (::fcntl(static_cast<int>(handle), F_GETFD) & FD_CLOEXEC) == 0; }
