#include "RegistryKey.h"

#include <vector>

namespace zt {

RegistryKey RegistryKey::Open(const std::wstring& path, REGSAM access) {
  RegistryHandle key;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, access, key.Receive()) != ERROR_SUCCESS) return RegistryKey();
  return RegistryKey(std::move(key));
}

RegistryKey RegistryKey::OpenOrCreate(const std::wstring& path, REGSAM access) {
  RegistryHandle key;
  if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr,
                      key.Receive(), nullptr) != ERROR_SUCCESS) {
    return RegistryKey();
  }
  return RegistryKey(std::move(key));
}

std::optional<std::uint32_t> RegistryKey::ReadDword(const wchar_t* name) const {
  DWORD type = 0;
  DWORD value = 0;
  DWORD bytes = sizeof value;
  if (!key_ ||
      RegQueryValueExW(key_.Get(), name, nullptr, &type, reinterpret_cast<BYTE*>(&value), &bytes) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  // The registry stores what it is given: a REG_DWORD can be shorter than its type says.
  if (type != REG_DWORD || bytes != sizeof value) return std::nullopt;
  return value;
}

std::optional<std::wstring> RegistryKey::ReadString(const wchar_t* name) const {
  DWORD type = 0;
  DWORD bytes = 0;
  if (!key_ || RegQueryValueExW(key_.Get(), name, nullptr, &type, nullptr, &bytes) != ERROR_SUCCESS)
    return std::nullopt;
  if ((type != REG_SZ && type != REG_EXPAND_SZ) || bytes % sizeof(wchar_t) != 0) return std::nullopt;
  std::vector<wchar_t> text(bytes / sizeof(wchar_t));
  if (RegQueryValueExW(key_.Get(), name, nullptr, &type, reinterpret_cast<BYTE*>(text.data()), &bytes) !=
      ERROR_SUCCESS) {
    return std::nullopt;
  }
  // The value may have changed between the two calls.
  if ((type != REG_SZ && type != REG_EXPAND_SZ) || bytes % sizeof(wchar_t) != 0) return std::nullopt;
  text.resize(bytes / sizeof(wchar_t));
  if (text.empty()) return std::wstring();
  if (text.back() != L'\0') return std::nullopt;
  return std::wstring(text.data());
}

bool RegistryKey::WriteDword(const wchar_t* name, std::uint32_t value) {
  const DWORD number = value;
  return key_ && RegSetValueExW(key_.Get(), name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number),
                                sizeof number) == ERROR_SUCCESS;
}

bool RegistryKey::WriteString(const wchar_t* name, const std::wstring& text) {
  const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
  return key_ && RegSetValueExW(key_.Get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), bytes) ==
                     ERROR_SUCCESS;
}

}  // namespace zt
