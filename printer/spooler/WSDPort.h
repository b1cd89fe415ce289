#pragma once

#include <string>
#include <string_view>

namespace zt {

// IsWSDPort reports whether a port of this computer is one for Web Services for Devices: its name says so, and so does
// the name of its monitor.
[[nodiscard]] bool IsWSDPort(std::wstring_view portName);

// ResolveWSDAddress finds the network address of the device behind a WSD port: its monitor says which device it is,
// Function Discovery, or else the registry, where it is. `serverName` is empty for a port of this computer. Empty when
// it is not found.
std::wstring ResolveWSDAddress(std::wstring_view portName, std::wstring_view serverName);

}  // namespace zt
