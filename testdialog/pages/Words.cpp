#include "Words.h"

#include <algorithm>

#include "CodePage.h"

namespace zt {

std::wstring Shown(std::string_view bytes) {
  constexpr std::size_t kLongest = 4000;
  const bool cut = bytes.size() > kLongest;
  std::wstring text = DecodeText(bytes.substr(0, kLongest));
  std::replace_if(
      text.begin(), text.end(), [](wchar_t character) { return character < L' ' || character == 0x7F; }, L' ');
  if (cut) text += Joined({L" … (", bytes.size(), " bytes in all)"});
  return text;
}

std::wstring WithLineEnds(std::wstring_view text) {
  std::wstring lines;
  for (const wchar_t c : text) {
    if (c == L'\r') continue;
    if (c == L'\n') lines += L'\r';
    lines += c;
  }
  return lines;
}

Ascii WhyNotRead(HResult result, bool usb, Ascii failed) {
  if (result != HResult::NotImplemented) return failed;
  return usb ? Ascii("Not offered over USB.") : Ascii("Not offered over the network.");
}

Ascii StateText(ProtectionState state) {
  switch (state) {
    case ProtectionState::On:
      return "on";
    case ProtectionState::Off:
      return "off";
    case ProtectionState::OT:
      return "OT";
    case ProtectionState::None:
      break;
  }
  return "none";
}

Ascii StateRemark(ProtectionState state) {
  switch (state) {
    case ProtectionState::On:
      return "The printer stops when a consumable is exhausted.";
    case ProtectionState::Off:
      return "The printer goes on when a consumable is exhausted.";
    case ProtectionState::OT:
      return "The printer says so by SBXOT. A run leaves such a printer alone.";
    case ProtectionState::None:
      break;
  }
  return "The command set has none of the words SBXON, SBXOFF and SBXOT.";
}

}  // namespace zt
