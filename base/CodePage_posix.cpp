#include "CodePage.h"

#include <cstdint>

namespace zt {

// wchar_t is a whole code point here.
std::string ToUtf8(std::wstring_view text) {
  std::string utf8;
  for (const wchar_t wide : text) {
    const auto point = static_cast<std::uint32_t>(wide);  // NOLINT(bugprone-signed-char-misuse): it is no char
    if (point < 0x80) {
      utf8 += static_cast<char>(point);
    } else if (point < 0x800) {
      utf8 += static_cast<char>(0xC0 | (point >> 6));
      utf8 += static_cast<char>(0x80 | (point & 0x3F));
    } else if (point < 0x10000) {
      utf8 += static_cast<char>(0xE0 | (point >> 12));
      utf8 += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
      utf8 += static_cast<char>(0x80 | (point & 0x3F));
    } else {
      utf8 += static_cast<char>(0xF0 | ((point >> 18) & 0x07));
      utf8 += static_cast<char>(0x80 | ((point >> 12) & 0x3F));
      utf8 += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
      utf8 += static_cast<char>(0x80 | (point & 0x3F));
    }
  }
  return utf8;
}

std::string ToNarrow(std::wstring_view text) { return ToUtf8(text); }

std::wstring ToWide(std::string_view text) {
  constexpr wchar_t kReplacement = 0xFFFD;
  std::wstring wide;
  for (std::size_t at = 0; at < text.size();) {
    const auto lead = static_cast<unsigned char>(text[at++]);
    const int more = lead < 0x80 ? 0 : lead < 0xC2 ? -1 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : lead < 0xF5 ? 3 : -1;
    if (more < 0) {
      wide += kReplacement;
      continue;
    }
    auto point = static_cast<std::uint32_t>(more == 0 ? lead : lead & (0x3F >> more));
    int read = 0;
    for (; read < more && at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80; ++read) {
      point = (point << 6) | (static_cast<unsigned char>(text[at++]) & 0x3Fu);
    }
    wide += read == more ? static_cast<wchar_t>(point) : kReplacement;
  }
  return wide;
}

std::wstring DecodeText(std::string_view text) { return ToWide(text); }

bool IsLeadByte(unsigned char /*byte*/) { return false; }

}  // namespace zt
