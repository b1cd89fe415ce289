#include <gtest/gtest.h>
#include <time.h>

#include <cstdlib>

#include "TimeText.h"

namespace zt {
namespace {

void Enter(const char* zone) {
  setenv("TZ", zone, 1);
  tzset();
}

TEST(TimeZoneTest, TimesAreLocal) {
  struct Row {
    const char* zone;
    std::string_view text;
    std::time_t time;
  };
  constexpr char newYork[] = "EST5EDT,M3.2.0,M11.1.0";
  const Row rows[] = {
      {newYork, "2014-03-06 10:20:00", 1394119200},
      {newYork, "2014-07-06 10:20:00", 1404656400},
      {"UTC0", "1969-12-31 23:59:59 0", -1},  // a time, not a failed conversion
      {"UTC0", "2040-01-01 00:00:00", 2208988800},
  };
  for (const Row& row : rows) {
    Enter(row.zone);
    EXPECT_EQ(ParseTimeText(row.text), row.time) << row.zone << " " << row.text;
    EXPECT_EQ(FormatLocalTime(row.time), row.text.substr(0, 19)) << row.zone;
  }
  Enter(newYork);
  // An hour that does not exist is moved to one that does.
  EXPECT_TRUE(ParseTimeText("2014-03-09 02:30:00").has_value());
  // Days are spans of time whatever the clock does: seven dates, one of which had 23 hours.
  const Now now = [] { return ParseTimeText("2014-03-12 12:00:00").value(); };
  EXPECT_TRUE(IsWithinDays("2014-03-05 12:00:00", 7, now));
  EXPECT_FALSE(IsWithinDays("2014-03-05 11:00:00", 7, now));
  Enter("UTC0");
}

}  // namespace
}  // namespace zt
