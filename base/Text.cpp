#include "Text.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

namespace zt {
namespace {

template <class Number>
struct Decimal {
  Number value = 0;
  const char* end = nullptr;  // first character after the number; null when there is no number
};

template <class Number>
Decimal<Number> ReadNumber(std::string_view text) {
  const char* last = text.data() + text.size();
  // from_chars takes "-" but no "+".
  const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-';
  Decimal<Number> decimal;
  const auto [end, error] = std::from_chars(text.data() + (plus ? 1 : 0), last, decimal.value);
  if (error == std::errc::invalid_argument) return decimal;
  decimal.end = end;
  if (error == std::errc::result_out_of_range) {
    using Limits = std::numeric_limits<Number>;
    decimal.value = text.front() == '-' ? Limits::min() : Limits::max();
  }
  return decimal;
}

template <class Number>
Number ReadLeading(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  return ReadNumber<Number>(text).value;
}

wchar_t Lower(wchar_t character) {
  return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character + (L'a' - L'A')) : character;
}

}  // namespace

std::string_view Trim(std::string_view text, std::string_view characters) {
  const std::size_t first = text.find_first_not_of(characters);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

std::vector<std::string_view> SplitAny(std::string_view text, std::string_view delimiters) {
  std::vector<std::string_view> tokens;
  for (std::size_t begin = text.find_first_not_of(delimiters); begin != std::string_view::npos;) {
    const std::size_t end = std::min(text.find_first_of(delimiters, begin), text.size());
    tokens.push_back(text.substr(begin, end - begin));
    begin = text.find_first_not_of(delimiters, end);
  }
  return tokens;
}

std::string OnOneLine(std::string_view text) {
  std::string line(text);
  std::replace_if(
      line.begin(), line.end(), [](char character) { return character == '\r' || character == '\n'; }, ' ');
  return line;
}

int ReadLeadingDecimal(std::string_view text) { return ReadLeading<int>(text); }

std::uint32_t ReadLeadingUnsigned(std::string_view text) {
  constexpr std::int64_t kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr std::int64_t kHighest = std::numeric_limits<std::uint32_t>::max();
  return static_cast<std::uint32_t>(std::clamp(ReadLeading<std::int64_t>(text), kLowest, kHighest));
}

std::optional<int> ParseDecimal(std::string_view text) {
  const Decimal decimal = ReadNumber<int>(text);
  if (!decimal.end || decimal.end != text.data() + text.size()) return std::nullopt;
  return decimal.value;
}

bool EqualsIgnoringCase(std::wstring_view left, std::wstring_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](wchar_t a, wchar_t b) { return Lower(a) == Lower(b); });
}

}  // namespace zt
