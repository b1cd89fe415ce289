#include "TonerRecord.h"

#include <algorithm>
#include <iterator>

namespace zt {
namespace {

constexpr std::string_view kLetters[] = {"C", "M", "Y", "K"};  // of the colours from Cyan on
constexpr auto kFirstColour = static_cast<std::uint32_t>(TonerColour::Cyan);

}  // namespace

std::string_view ColourLetter(TonerColour colour) {
  const std::uint32_t index = static_cast<std::uint32_t>(colour) - kFirstColour;
  return index < std::size(kLetters) ? kLetters[index] : std::string_view();
}

std::optional<TonerColour> ColourOfLetter(std::string_view letter) {
  const auto* found = std::find(std::begin(kLetters), std::end(kLetters), letter);
  if (found == std::end(kLetters)) return std::nullopt;
  return static_cast<TonerColour>(static_cast<std::uint32_t>(found - std::begin(kLetters)) + kFirstColour);
}

void TonerRecord::SetValue(std::string_view element, std::string_view text) {
  values_.insert_or_assign(std::string(element), text);
}

void TonerRecord::SetLevel(std::uint32_t percent) { SetValue("Level", percent > 100 ? "" : std::to_string(percent)); }

void TonerRecord::SetAverageAreaCoverage(std::uint32_t coverage) {
  SetValue("AverageAreaCoverage", std::to_string(coverage));
}

}  // namespace zt
