#include "EncodeFormValue.h"

#include <gtest/gtest.h>

namespace zt {
namespace {

TEST(EncodeFormValue, EncodesEveryByteThatIsNotPlain) {
  using namespace std::string_literals;
  const struct {
    std::string text;
    std::string encoded;
  } rows[] = {
      {"", ""},
      {"a b&c", "a%20b%26c"},
      {"azAZ09~!*()'", "azAZ09~!*()'"},
      {"-_.", "%2d%5f%2e"},  // plain in other encoders
      {"+=%/", "%2b%3d%25%2f"},
      {"<a b=\"1\"/>\r\n", "%3ca%20b%3d%221%22%2f%3e%0d%0a"},
      {"\0\x7f\x80\xff\xe9"s, "%00%7f%80%ff%e9"},
      {"@[`{/:", "%40%5b%60%7b%2f%3a"},  // the neighbours of letters and digits
  };
  for (const auto& row : rows) EXPECT_EQ(EncodeFormValue(row.text), row.encoded) << row.text;
}

}  // namespace
}  // namespace zt
