#include "RegistryKey.h"

#include <gtest/gtest.h>

namespace zt {
namespace {

constexpr wchar_t path[] = L"SOFTWARE\\Tressil\\Test";

TEST(RegistryKey, MissingKeyAnswersNothing) {
  RegistryKey key = RegistryKey::Open(L"SOFTWARE\\Tressil\\Absent", KEY_READ);
  EXPECT_FALSE(key);
  EXPECT_EQ(key.ReadDword(L"v"), std::nullopt);
  EXPECT_EQ(key.ReadString(L"v"), std::nullopt);
  EXPECT_FALSE(key.WriteDword(L"v", 1));
}

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
      {REG_SZ, L"1", 4, std::nullopt, L"1"},
      {REG_EXPAND_SZ, L"%TEMP%", 14, std::nullopt, L"%TEMP%"},
      {REG_SZ, L"abc", 4, std::nullopt, std::nullopt},  // no terminator
      {REG_SZ, L"ab", 3, std::nullopt, std::nullopt},   // half a character
      {REG_SZ, L"", 0, std::nullopt, L""},
      {REG_SZ, L"a\0b", 8, std::nullopt, L"a"},
      {REG_BINARY, L"a", 4, std::nullopt, std::nullopt},
      {REG_MULTI_SZ, L"a\0", 6, std::nullopt, std::nullopt},
  };
  for (const auto& row : rows) {
    RegistryKey key = RegistryKey::OpenOrCreate(path, KEY_READ | KEY_SET_VALUE);
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, path, L"v", row.type, row.data, row.bytes);
    EXPECT_EQ(key.ReadDword(L"v"), row.number) << row.type << " " << row.bytes;
    EXPECT_EQ(key.ReadString(L"v"), row.text) << row.type << " " << row.bytes;
  }
}

TEST(RegistryKey, WrittenValuesAreReadBack) {
  RegistryKey key = RegistryKey::OpenOrCreate(L"SOFTWARE\\Tressil\\Test\\New\\Deeper", KEY_READ | KEY_SET_VALUE);
  ASSERT_TRUE(key);
  EXPECT_TRUE(key.WriteDword(L"Policy", 3));
  EXPECT_TRUE(key.WriteString(L"AppName", L"ZT.exe"));
  EXPECT_EQ(key.ReadDword(L"Policy"), 3u);
  EXPECT_EQ(key.ReadString(L"AppName"), L"ZT.exe");
}

}  // namespace
}  // namespace zt
