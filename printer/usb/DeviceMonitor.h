#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace zt {

// DeviceMonitor is the maker's device-monitor library, which serialises the traffic of a USB port. Both functions take
// the port identifier and return whether they succeeded.
struct DeviceMonitor {
  std::function<bool(std::uint8_t port)> acquire;
  std::function<bool(std::uint8_t port)> release;
};

// LoadDeviceMonitor (Windows only) loads "klpmon.dll" from the folder of the program or of the system; nothing when it
// is not there or lacks one of its functions. The library stays loaded as long as the functions are held.
std::optional<DeviceMonitor> LoadDeviceMonitor();

}  // namespace zt
