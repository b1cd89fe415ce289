#include "SettingsAccess_win.h"

#include <ctime>

#include "CodePage.h"

namespace zt {

SettingsAccess::SettingsAccess(const std::wstring& baseName)
    : settings(ToNarrow(baseName)), skipChecker(&settings, [] { return std::time(nullptr); }) {
  usable = settings.Load() && settings.CanBeKept();
}

}  // namespace zt
