#include "EncodeFormValue.h"

namespace zt {
namespace {

// isalnum() would ask the locale.
bool StaysAsItIs(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || std::string_view("~!*()'").find(character) != std::string_view::npos;
}

}  // namespace

std::string EncodeFormValue(std::string_view text) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string encoded;
  // A report is mostly markup and line ends, of which many bytes take three.
  encoded.reserve(text.size() * 2);
  for (const char character : text) {
    if (StaysAsItIs(character)) {
      encoded += character;
      continue;
    }
    const auto byte = static_cast<unsigned char>(character);
    encoded += '%';
    encoded += kDigits[byte >> 4];
    encoded += kDigits[byte & 0x0F];
  }
  return encoded;
}

}  // namespace zt
