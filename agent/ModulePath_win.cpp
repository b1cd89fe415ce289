#include "ModulePath.h"

#include <stdlib.h>

#include "ProgramPath.h"

namespace zt {

ModulePath ModulePath::OfThisProgram() {
  constexpr std::size_t kLongestPath = 259;
  const std::wstring path = ProgramPath();
  if (path.size() > kLongestPath) return {};

  wchar_t drive[256];
  wchar_t directory[256];
  wchar_t baseName[256];
  wchar_t extension[256];
  if (_wsplitpath_s(path.c_str(), drive, 256, directory, 256, baseName, 256, extension, 256) != 0) return {};
  return {.directory = std::wstring(drive) + directory, .baseName = baseName, .extension = extension};
}

}  // namespace zt
