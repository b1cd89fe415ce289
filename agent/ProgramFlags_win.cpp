#include "ProgramFlags.h"

#include "RegistryKey.h"

namespace zt {

ProgramFlags ProgramFlags::Read() {
  const RegistryKey key = RegistryKey::Open(L"SOFTWARE\\Tressil\\ZOLT", KEY_READ);
  const auto isOn = [&](const wchar_t* name) { return key.ReadDword(name) == 1u; };
  if (isOn(L"Disable")) return {.disable = true, .url = {}};  // nothing else is asked then
  return {.showResultBeforeSend = isOn(L"ShowResultBeforeSend"),
          .dontCheckSkip = isOn(L"DontCheckSkip"),
          .virtualTest = isOn(L"VirtualTest"),
          .testMode = isOn(L"TestMode"),
          .url = key.ReadString(L"URL")};
}

}  // namespace zt
