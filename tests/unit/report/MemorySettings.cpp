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
  settingsFile = FormatIni(sections_);
  return true;
}

}  // namespace zt
