#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zt {

// FindUSBDevicePath finds the device path of the USB printer behind a port such as "USB001". Of several printers with
// that port number it is the last one that opens. Nothing without one.
std::optional<std::wstring> FindUSBDevicePath(std::wstring_view portName);

// EnumerateUSBPrinterPaths adds the device paths of all USB printers that have a port number; true if there is any.
bool EnumerateUSBPrinterPaths(std::vector<std::wstring>& paths);

}  // namespace zt
