#pragma once

#include <string>

namespace zt {

// ModulePath is the path of the running program, taken apart.
struct ModulePath {
  std::wstring directory;  // with drive and trailing backslash
  std::wstring baseName;
  std::wstring extension;  // with its dot

  // OfThisProgram returns the path of the program file; all empty when it has 260 characters or more.
  static ModulePath OfThisProgram();
};

}  // namespace zt
