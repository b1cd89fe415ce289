#pragma once

#include <optional>
#include <string>

namespace zt {

// ProgramFlags is what an administrator has set under HKEY_LOCAL_MACHINE\SOFTWARE\Tressil\ZOLT. A flag is on when its
// value is a REG_DWORD of exactly 1.
struct ProgramFlags {
  bool disable = false;               // the agent does nothing
  bool showResultBeforeSend = false;  // the user sees each report and may cancel it
  bool dontCheckSkip = false;         // no skip rule applies
  bool virtualTest = false;           // canned data instead of a printer
  bool testMode = false;              // uploads are marked as tests
  std::optional<std::wstring> url;    // base URL of the report server

  // Read reads the flags; all are off when the key cannot be opened.
  static ProgramFlags Read();
};

}  // namespace zt
