#include "ProgramPath.h"

#include <windows.h>

namespace zt {

std::wstring ProgramPath() {
  constexpr DWORD kLongestPath = 32767;  // in characters, of any path that Windows takes
  std::wstring path(kLongestPath, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), kLongestPath));
  return path;
}

}  // namespace zt
