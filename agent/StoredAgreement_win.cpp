#include "StoredAgreement.h"

#include "RegistryKey.h"

namespace zt {
namespace {

constexpr wchar_t kParent[] = L"SOFTWARE\\Velnora\\WEB_Agreement";

std::wstring PathOf(const std::wstring& model) { return std::wstring(kParent) + L"\\" + model; }

bool IsAgreed(const RegistryKey& key) { return (key.ReadDword(L"ZOLTAgree").value_or(0) & 1) != 0; }

}  // namespace

bool ReadStoredAgreement(const std::wstring& model) {
  constexpr REGSAM kAccess = KEY_READ | KEY_SET_VALUE | KEY_CREATE_SUB_KEY;
  const std::wstring path = PathOf(model);
  RegistryKey key = RegistryKey::Open(path, kAccess);
  if (!key && RegistryKey::Open(kParent, KEY_READ)) key = RegistryKey::OpenOrCreate(path, kAccess);
  return IsAgreed(key);
}

bool FindStoredAgreement(const std::wstring& model) { return IsAgreed(RegistryKey::Open(PathOf(model), KEY_READ)); }

}  // namespace zt
