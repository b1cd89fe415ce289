#include "ServerAnswer.h"

#include "Text.h"

namespace zt {

std::optional<std::string> ServerAnswer::Find(std::string_view key) const {
  const auto found = values_.find(key);
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

std::optional<int> ServerAnswer::FindNumber(std::string_view key) const {
  const auto found = values_.find(key);
  if (found == values_.end()) return std::nullopt;
  return ParseDecimal(Trim(found->second));
}

}  // namespace zt
