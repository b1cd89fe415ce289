#include <windows.h>

#include "ProgramPath.h"

namespace zt {

std::wstring ProgramPath() {
  constexpr DWORD longestPath = 32767;  // in characters, of any path that Windows takes
  std::wstring path(longestPath, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), longestPath));
  return path;
}

}  // namespace zt
