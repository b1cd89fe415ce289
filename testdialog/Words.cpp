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
  if (cut) text += L" … (" + std::to_wstring(bytes.size()) + L" bytes in all)";
  return text;
}

std::wstring WhyNotRead(HResult result, bool usb, std::wstring_view failed) {
  if (result != HResult::NotImplemented) return std::wstring(failed);
  return usb ? L"Not offered over USB." : L"Not offered over the network.";
}

std::wstring StateText(ProtectionState state) {
  switch (state) {
    case ProtectionState::On:
      return L"on";
    case ProtectionState::Off:
      return L"off";
    case ProtectionState::OT:
      return L"OT";
    case ProtectionState::None:
      break;
  }
  return L"none";
}

std::wstring StateRemark(ProtectionState state) {
  switch (state) {
    case ProtectionState::On:
      return L"The printer stops when a consumable is exhausted.";
    case ProtectionState::Off:
      return L"The printer goes on when a consumable is exhausted.";
    case ProtectionState::OT:
      return L"The printer says so by SBXOT. A run leaves such a printer alone.";
    case ProtectionState::None:
      break;
  }
  return L"The command set has none of the words SBXON, SBXOFF and SBXOT.";
}

}  // namespace zt
