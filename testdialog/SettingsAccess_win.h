#pragma once

#include <string>

#include "ZOLTLocalSetting.h"
#include "ZOLTSkipChecker.h"

namespace zt {

// SettingsAccess is the agent's settings file with the skip rules over it, for as long as a page looks at them. What a
// page sets is saved at its end.
struct SettingsAccess {
  explicit SettingsAccess(const std::wstring& baseName);

  ZOLTLocalSetting settings;
  ZOLTSkipChecker skipChecker;
  bool usable;
};

}  // namespace zt
