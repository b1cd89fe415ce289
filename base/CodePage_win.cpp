#include "CodePage.h"

#include <windows.h>

namespace zt {
namespace {

std::string ToCodePage(UINT codePage, std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  const int needed = WideCharToMultiByte(codePage, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<std::size_t>(needed > 0 ? needed : 0), '\0');
  WideCharToMultiByte(codePage, 0, text.data(), length, narrow.data(), needed, nullptr, nullptr);
  return narrow;
}

std::wstring FromCodePage(UINT codePage, DWORD flags, std::string_view text) {
  const int length = static_cast<int>(text.size());
  const int needed = MultiByteToWideChar(codePage, flags, text.data(), length, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(needed > 0 ? needed : 0), L'\0');
  MultiByteToWideChar(codePage, flags, text.data(), length, wide.data(), needed);
  return wide;
}

}  // namespace

std::string ToNarrow(std::wstring_view text) { return ToCodePage(CP_ACP, text); }

std::string ToUtf8(std::wstring_view text) { return ToCodePage(CP_UTF8, text); }

std::wstring ToWide(std::string_view text) { return FromCodePage(CP_ACP, 0, text); }

std::wstring DecodeText(std::string_view text) {
  std::wstring wide = FromCodePage(CP_UTF8, MB_ERR_INVALID_CHARS, text);
  return wide.empty() ? ToWide(text) : wide;
}

bool IsLeadByte(unsigned char byte) { return IsDBCSLeadByte(byte) != FALSE; }

}  // namespace zt
