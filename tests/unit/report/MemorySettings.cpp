#include "MemorySettings.h"

#include "KVFLocalSetting.h"

namespace zt {

std::string settingsFile;

KVFLocalSetting::KVFLocalSetting(std::string_view) {}

KVFLocalSetting::~KVFLocalSetting() {
  if (dirty_) Save({});
}

bool KVFLocalSetting::Load() {
  sections_ = ParseIni(settingsFile);
  return true;
}

bool KVFLocalSetting::Save(const std::wstring&) const {
  const std::string text = FormatIni(sections_);
  settingsFile.replace(0, text.size(), text);
  return true;
}

}  // namespace zt
