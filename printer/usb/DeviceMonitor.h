#pragma once

#include <optional>

#include "PortContention.h"

namespace zt {

// LoadDeviceMonitor loads "klpmon.dll" from the folder of the program or of the system; nothing when it is not there or
// lacks one of its functions. The library stays loaded as long as the functions are held.
std::optional<DeviceMonitor> LoadDeviceMonitor();

}  // namespace zt
