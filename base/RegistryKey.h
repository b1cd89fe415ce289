#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Handle.h"

namespace zt {

// RegistryKey is one key of HKEY_LOCAL_MACHINE. An object whose opening failed holds no key: every read of it returns
// nothing and every write false.
class RegistryKey {
 public:
  RegistryKey() = default;

  // Open opens an existing key with the given access mask. Empty on failure.
  static RegistryKey Open(const std::wstring& path, REGSAM access);

  // OpenOrCreate opens the key, or creates it and the keys on the way to it. Empty on failure.
  static RegistryKey OpenOrCreate(const std::wstring& path, REGSAM access);

  explicit operator bool() const { return static_cast<bool>(key_); }

  // ReadDword returns the value when it exists and is a REG_DWORD.
  std::optional<std::uint32_t> ReadDword(const wchar_t* name) const;

  // ReadString returns the value when it exists, is a REG_SZ or REG_EXPAND_SZ (variables are not expanded) and its last
  // character is the terminator; an empty value needs none. The text ends at its first NUL.
  std::optional<std::wstring> ReadString(const wchar_t* name) const;

  bool WriteDword(const wchar_t* name, std::uint32_t value);
  bool WriteString(const wchar_t* name, const std::wstring& text);

 private:
  explicit RegistryKey(RegistryHandle key) : key_(std::move(key)) {}

  RegistryHandle key_;
};

}  // namespace zt
