#include "Text.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

namespace zt {
namespace {

struct Decimal {
  int value = 0;
  const char* end = nullptr;  // first character after the number; null when there is no number
};

Decimal ReadNumber(std::string_view text) {
  const char* last = text.data() + text.size();
  // from_chars takes "-" but no "+".
  const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-';
  Decimal decimal;
  const auto [end, error] = std::from_chars(text.data() + (plus ? 1 : 0), last, decimal.value);
  if (error == std::errc::invalid_argument) return decimal;
  decimal.end = end;
  if (error == std::errc::result_out_of_range) {
    decimal.value = text.front() == '-' ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
  }
  return decimal;
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

int ReadLeadingDecimal(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
  return ReadNumber(text).value;
}

std::optional<int> ParseDecimal(std::string_view text) {
  const Decimal decimal = ReadNumber(text);
  if (!decimal.end || decimal.end != text.data() + text.size()) return std::nullopt;
  return decimal.value;
}

bool EqualsIgnoringCase(std::wstring_view left, std::wstring_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](wchar_t a, wchar_t b) { return Lower(a) == Lower(b); });
}

}  // namespace zt
