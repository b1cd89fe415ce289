#include "RegistryKey.h"

#include <gtest/gtest.h>

namespace zt {
namespace {

constexpr wchar_t path[] = L"SOFTWARE\\Tressil\\Test\\Deeper";

// A key that is missing, and values as they are written, are met by the log's tests.
TEST(RegistryKey, StoredValuesAreHostileUntilChecked) {
  const struct {
    DWORD type;
    const void* data;
    DWORD bytes;
    std::optional<std::uint32_t> number;
    std::optional<std::wstring> text;
  } rows[] = {
      {REG_DWORD, L"\x1\x0", 4, 1, std::nullopt},
      {REG_DWORD, L"\x1\x0", 2, std::nullopt, std::nullopt},  // shorter than its type
      {REG_QWORD, L"\x1\0\0\0", 8, std::nullopt, std::nullopt},
      {REG_EXPAND_SZ, L"%TEMP%", 14, std::nullopt, L"%TEMP%"},
      {REG_SZ, L"abc", 4, std::nullopt, std::nullopt},  // no terminator
      {REG_SZ, L"ab", 3, std::nullopt, std::nullopt},   // half a character
      {REG_SZ, L"", 0, std::nullopt, L""},
      {REG_SZ, L"a\0b", 8, std::nullopt, L"a"},
      {REG_BINARY, L"a", 4, std::nullopt, std::nullopt},
      {REG_MULTI_SZ, L"a\0", 6, std::nullopt, std::nullopt},
  };
  const RegistryKey key = RegistryKey::OpenOrCreate(path, KEY_READ | KEY_SET_VALUE);
  for (const auto& row : rows) {
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, path, L"v", row.type, row.data, row.bytes);
    EXPECT_EQ(key.ReadDword(L"v"), row.number) << row.type << " " << row.bytes;
    EXPECT_EQ(key.ReadString(L"v"), row.text) << row.type << " " << row.bytes;
  }
}

}  // namespace
}  // namespace zt
