#pragma once

#include <string_view>

#include "Handle.h"

namespace zt {

// CopyToClipboard replaces what is on the clipboard by the text. False when another program holds it.
bool CopyToClipboard(HWND owner, std::wstring_view text);

}  // namespace zt
