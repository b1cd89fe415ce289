#pragma once

#include <string>

namespace zt {

// WindowsVersion returns the version of Windows, "10.0.19045"; empty when it is not told.
std::wstring WindowsVersion();

// AgentVersion returns the version of this program from its resources, "1.0.0.0"; empty without one.
std::wstring AgentVersion();

// LocalTimeText returns the local time, "YYYY-MM-DD hh:mm:ss".
std::wstring LocalTimeText();

}  // namespace zt
