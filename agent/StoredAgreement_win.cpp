#include "StoredAgreement.h"

#include "RegistryKey.h"

namespace zt {

bool ReadStoredAgreement(const std::wstring& model) {
  constexpr REGSAM kAccess = KEY_READ | KEY_SET_VALUE | KEY_CREATE_SUB_KEY;
  const std::wstring parent = L"SOFTWARE\\Velnora\\WEB_Agreement";
  const std::wstring path = parent + L"\\" + model;
  RegistryKey key = RegistryKey::Open(path, kAccess);
  if (!key && RegistryKey::Open(parent, KEY_READ)) key = RegistryKey::OpenOrCreate(path, kAccess);
  return (key.ReadDword(L"ZOLTAgree").value_or(0) & 1) != 0;
}

}  // namespace zt
