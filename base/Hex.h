#pragma once

#include <cstdint>
#include <string>

namespace zt {

inline constexpr char kUpperHexDigits[] = "0123456789ABCDEF";
inline constexpr char kLowerHexDigits[] = "0123456789abcdef";

// AppendHex appends the two hexadecimal digits of a byte.
inline void AppendHex(std::string& text, std::uint8_t byte, const char* digits = kUpperHexDigits) {
  text += digits[byte >> 4];
  text += digits[byte & 0x0F];
}

// IsDecimalDigit and IsHexDigit know the digits of ASCII only, whatever the locale.
constexpr bool IsDecimalDigit(wchar_t character) { return character >= L'0' && character <= L'9'; }
constexpr bool IsHexDigit(wchar_t character) {
  return IsDecimalDigit(character) || (character >= L'a' && character <= L'f') ||
         (character >= L'A' && character <= L'F');
}

}  // namespace zt
