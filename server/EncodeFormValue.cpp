#include "EncodeFormValue.h"

#include "Hex.h"

namespace zt {
namespace {

// isalnum() would ask the locale.
bool StaysAsItIs(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         IsDecimalDigit(character) || std::string_view("~!*()'").find(character) != std::string_view::npos;
}

}  // namespace

std::string EncodeFormValue(std::string_view text) {
  std::string encoded;
  // A report is mostly markup and line ends, of which many bytes take three.
  encoded.reserve(text.size() * 2);
  for (const char character : text) {
    if (StaysAsItIs(character)) {
      encoded += character;
      continue;
    }
    encoded += '%';
    AppendHex(encoded, static_cast<std::uint8_t>(character), kLowerHexDigits);
  }
  return encoded;
}

}  // namespace zt
