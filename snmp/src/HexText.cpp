#include "HexText.h"

#include <algorithm>

namespace ztsnmp {

char BtoH(std::uint8_t nibble) noexcept { return "0123456789ABCDEF"[nibble & 0x0F]; }

int HtoB(char digit) noexcept {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return -1;
}

std::string HtoA(std::span<const std::uint8_t> bytes) {
  std::string text;
  text.reserve(bytes.size() * 2);
  for (std::uint8_t byte : bytes) {
    text += BtoH(byte >> 4);
    text += BtoH(byte & 0x0F);
  }
  return text;
}

bool isHexText(std::string_view text, std::size_t digits) noexcept {
  return text.size() == digits && std::all_of(text.begin(), text.end(), [](char c) { return HtoB(c) >= 0; });
}

}  // namespace ztsnmp
