#pragma once

#include <string>

namespace zt {

// ProgramPath returns the full path of the running program's file; empty when the system does not tell it.
std::wstring ProgramPath();

}  // namespace zt
