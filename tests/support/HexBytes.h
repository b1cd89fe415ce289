#pragma once

#include <cctype>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

/// fromHex reads "30 0A 02", blanks wherever they help.
inline Bytes fromHex(std::string_view text) {
  Bytes bytes;
  std::string digits;
  for (char c : text) {
    if (c == ' ') continue;
    digits += c;
    if (digits.size() < 2) continue;
    bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits, nullptr, 16)));
    digits.clear();
  }
  return bytes;
}

/// parted splits a row "left = right".
inline std::pair<std::string, std::string> parted(std::string_view row) {
  const auto middle = row.find(" = ");
  return {std::string(row.substr(0, middle)), std::string(row.substr(middle + 3))};
}

inline std::string toHex(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (std::uint8_t byte : bytes) {
    if (!text.empty()) text += ' ';
    text += "0123456789ABCDEF"[byte >> 4];
    text += "0123456789ABCDEF"[byte & 15];
  }
  return text;
}

/// element wraps a content in tag and length, long form only where it must.
inline Bytes element(std::uint8_t tag, const Bytes& content) {
  Bytes bytes{tag};
  if (content.size() >= 0x100) {
    bytes.insert(bytes.end(), {0x82, static_cast<std::uint8_t>(content.size() >> 8)});
  } else if (content.size() >= 0x80) {
    bytes.push_back(0x81);
  }
  bytes.push_back(static_cast<std::uint8_t>(content.size()));
  bytes.insert(bytes.end(), content.begin(), content.end());
  return bytes;
}

inline Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}
