#include "Clock.h"

#include <windows.h>

namespace zt {

void SystemPause(std::uint32_t milliseconds) { Sleep(milliseconds); }

}  // namespace zt
