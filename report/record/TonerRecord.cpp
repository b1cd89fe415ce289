#include "TonerRecord.h"

#include <algorithm>
#include <iterator>

namespace zt {
namespace {

constexpr std::string_view kLetters[] = {"C", "M", "Y", "K"};  // of the colours from 1 on

}  // namespace

std::string_view ColourLetter(std::int32_t colour) {
  return colour >= 1 && colour <= static_cast<std::int32_t>(std::size(kLetters)) ? kLetters[colour - 1] : "";
}

std::int32_t ColourOfLetter(std::string_view letter) {
  const auto* found = std::find(std::begin(kLetters), std::end(kLetters), letter);
  return found == std::end(kLetters) ? 0 : static_cast<std::int32_t>(found - std::begin(kLetters)) + 1;
}

void TonerRecord::SetValue(std::string_view element, std::string_view text) {
  values_.insert_or_assign(std::string(element), text);
}

void TonerRecord::SetLevel(std::uint32_t percent) { SetValue("Level", percent > 100 ? "" : std::to_string(percent)); }

void TonerRecord::SetAverageAreaCoverage(std::uint32_t coverage) {
  SetValue("AverageAreaCoverage", std::to_string(coverage));
}

}  // namespace zt
