#include "EncodeFormValue.h"

#include <gtest/gtest.h>

namespace zt {
namespace {

TEST(EncodeFormValue, EncodesEveryByteThatIsNotPlain) {
  using namespace std::string_literals;
  EXPECT_EQ(EncodeFormValue("azAZ09~!*()'"), "azAZ09~!*()'");
  EXPECT_EQ(EncodeFormValue("@[`{/:"), "%40%5b%60%7b%2f%3a");  // the neighbours of letters and digits
  EXPECT_EQ(EncodeFormValue("-_."), "%2d%5f%2e");              // plain in other encoders
  EXPECT_EQ(EncodeFormValue(" &+=%\r\n"), "%20%26%2b%3d%25%0d%0a");
  EXPECT_EQ(EncodeFormValue("\0\x7f\x80\xff"s), "%00%7f%80%ff");
}

}  // namespace
}  // namespace zt
