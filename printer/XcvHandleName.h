#pragma once

#include <string>
#include <string_view>

namespace zt {

// XcvHandleName answers the name under which the spooler opens the monitor side of a port. `serverName` is empty for a
// port of this computer.
std::wstring XcvHandleName(std::wstring_view portName, std::wstring_view serverName);

}  // namespace zt
