#include "KVFLocalSetting.h"

namespace zt {

bool KVFLocalSetting::GetValue(std::string_view section, std::string_view key, std::string& text) const {
  const auto inSection = sections_.find(section);
  if (inSection == sections_.end()) return false;
  const auto value = inSection->second.find(key);
  if (value == inSection->second.end()) return false;
  text = value->second;
  return true;
}

void KVFLocalSetting::SetValue(std::string_view section, std::string_view key, std::string_view text) {
  sections_[std::string(section)].insert_or_assign(std::string(key), text);
  dirty_ = true;
}

}  // namespace zt
