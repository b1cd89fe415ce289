#include "ProgramFlags.h"
#include "RegistryKey.h"

namespace zt {

ProgramFlags ProgramFlags::Read() {
  const RegistryKey key = RegistryKey::Open(L"SOFTWARE\\Tressil\\ZOLT", KEY_READ);
  const auto isOn = [&](const wchar_t* name) { return key.ReadDword(name) == 1u; };
  return {.disable = isOn(L"Disable"),
          .showResultBeforeSend = isOn(L"ShowResultBeforeSend"),
          .dontCheckSkip = isOn(L"DontCheckSkip"),
          .virtualTest = isOn(L"VirtualTest"),
          .testMode = isOn(L"TestMode"),
          .url = key.ReadString(L"URL")};
}

bool ReadStoredAgreement(const std::wstring& model) {
  constexpr REGSAM kAccess = KEY_READ | KEY_SET_VALUE | KEY_CREATE_SUB_KEY;
  const std::wstring parent = L"SOFTWARE\\Velnora\\WEB_Agreement";
  const std::wstring path = parent + L"\\" + model;
  RegistryKey key = RegistryKey::Open(path, kAccess);
  if (!key && RegistryKey::Open(parent, KEY_READ)) key = RegistryKey::OpenOrCreate(path, kAccess);
  return (key.ReadDword(L"ZOLTAgree").value_or(0) & 1) != 0;
}

}  // namespace zt
