#pragma once

#include <string_view>

#include "Handle.h"

namespace zt {

// SaveWithDialog asks the user for a file of that kind, beginning with the name that is given, and writes the bytes
// into it. It tells the user of a failure itself. `suffix` is without the dot.
void SaveWithDialog(HWND owner, const wchar_t* name, const wchar_t* suffix, std::string_view bytes);

}  // namespace zt
