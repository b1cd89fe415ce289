#include "Installer.h"

#include "CodePage.h"
#include "ElevationPolicy.h"
#include "Trace.h"
#include "ZOLTLocalSetting.h"

namespace zt {

void Install(const ModulePath& program) {
  if (program.baseName.empty()) return;
  ZT_TRACE(Information, "Installing..." << program.baseName);
  ZOLTLocalSetting(ToNarrow(program.baseName)).CreateSettingsFile();
  if (!program.directory.empty() && !program.extension.empty()) RegisterElevationPolicy(program);
}

void Uninstall(const std::wstring& baseName) {
  if (baseName.empty()) return;
  ZT_TRACE(Information, "Uninstalling..." << baseName);
  ZOLTLocalSetting(ToNarrow(baseName)).DeleteSettingsFile();
}

}  // namespace zt
