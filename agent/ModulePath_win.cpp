#include <stdlib.h>
#include <windows.h>

#include "ModulePath.h"

namespace zt {

ModulePath ModulePath::OfThisProgram() {
  wchar_t path[260];
  const DWORD length = GetModuleFileNameW(nullptr, path, 260);
  if (length == 0 || length == 260) return {};

  wchar_t drive[256];
  wchar_t directory[256];
  wchar_t baseName[256];
  wchar_t extension[256];
  if (_wsplitpath_s(path, drive, 256, directory, 256, baseName, 256, extension, 256) != 0) return {};
  return {.directory = std::wstring(drive) + directory, .baseName = baseName, .extension = extension};
}

}  // namespace zt
