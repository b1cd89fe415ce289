#include "Text.h"

#include <gtest/gtest.h>

#include <climits>

#include "CodePage.h"

namespace zt {
namespace {

TEST(Text, TrimAndSplit) {
  EXPECT_EQ(Trim("\r\n a b \n"), "a b");
  EXPECT_EQ(Trim("\ta"), "\ta");  // a tab is no blank here
  EXPECT_EQ(Trim(" \r\n"), "");
  using Tokens = std::vector<std::string_view>;
  EXPECT_EQ(SplitAny(",;PJL;,ZOLT a", ",;"), (Tokens{"PJL", "ZOLT a"}));
  EXPECT_EQ(SplitAny(",", ","), Tokens{});
}

TEST(Text, DecimalNumbers) {
  const struct {
    const char* text;
    int leading;
    std::optional<int> whole;
  } rows[] = {
      {"42", 42, 42},
      {"-7", -7, -7},
      {"+7", 7, 7},
      {"+-7", 0, std::nullopt},
      {"42abc", 42, std::nullopt},
      {" \t42", 42, std::nullopt},
      {"", 0, std::nullopt},
      {"2147483648", INT_MAX, INT_MAX},
      {"-99999999999", INT_MIN, INT_MIN},
      {"0x10", 0, std::nullopt},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ReadLeadingDecimal(row.text), row.leading) << row.text;
    EXPECT_EQ(ParseDecimal(row.text), row.whole) << row.text;
  }
}

TEST(Text, EqualsIgnoringCaseFoldsOnlyLetters) {
  EXPECT_TRUE(EqualsIgnoringCase(L"qNAME", L"QName"));
  EXPECT_FALSE(EqualsIgnoringCase(L"QNam", L"QName"));
  EXPECT_FALSE(EqualsIgnoringCase(L"@", L"`"));
}

TEST(CodePage, TextSurvivesBothWays) {
  EXPECT_EQ(DecodeText("B\xC3\xBC\xE4\xBA\x8B"), L"B\u00FC\u4E8B");
  EXPECT_EQ(DecodeText("B\xC3\xBC\xFC"), ToWide("B\xC3\xBC\xFC"));
  EXPECT_EQ(ToUtf8(L"B\u00FC\u4E8B"), "B\xC3\xBC\xE4\xBA\x8B");
}

}  // namespace
}  // namespace zt
