#include <windows.h>

#include <string>

#include "Trace.h"

namespace zt {

void WriteDebug(std::string_view text) { OutputDebugStringA(std::string(text).c_str()); }

void WriteDebug(std::wstring_view text) { OutputDebugStringW(std::wstring(text).c_str()); }

}  // namespace zt
