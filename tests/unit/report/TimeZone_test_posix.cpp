#include <gtest/gtest.h>
#include <time.h>

#include <cstdlib>

#include "TimeText.h"

namespace zt {
namespace {

TEST(TimeZoneTest, TimesAreLocal) {
  setenv("TZ", "EST5EDT,M3.2.0,M11.1.0", 1);
  tzset();
  EXPECT_EQ(ParseTimeText("2014-03-06 10:20:00"), 1394119200);
  EXPECT_EQ(ParseTimeText("2014-07-06 10:20:00"), 1404656400);
  EXPECT_EQ(FormatLocalTime(1404656400), "2014-07-06 10:20:00");
  EXPECT_EQ(TimeTextAfterDays("2147483647-12-31", 1), "2147483648-01-01 00:00:00");  // a year that no int holds
  EXPECT_EQ(ParseTimeText("1969-12-31 18:59:59 0"), -1);                             // a time, not a failed conversion
  // Days are spans of time whatever the clock does: seven dates, one of which had 23 hours.
  const Now now = [] { return ParseTimeText("2014-03-12 12:00:00").value(); };
  EXPECT_TRUE(IsWithinDays("2014-03-05 12:00:00", 7, now));
  EXPECT_FALSE(IsWithinDays("2014-03-05 11:00:00", 7, now));
  setenv("TZ", "UTC0", 1);
  tzset();
}

}  // namespace
}  // namespace zt
