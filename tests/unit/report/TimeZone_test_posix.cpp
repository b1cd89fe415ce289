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
    std::string_view formatted;
  };
  constexpr char berlin[] = "CET-1CEST,M3.5.0,M10.5.0/3";
  constexpr char newYork[] = "EST5EDT,M3.2.0,M11.1.0";
  const Row rows[] = {
      {"UTC0", "2014-03-06 10:20:00", 1394101200, "2014-03-06 10:20:00"},
      {"JST-9", "2014-03-06 10:20:00", 1394068800, "2014-03-06 10:20:00"},
      {"NPT-5:45", "2014-03-06 10:20:00", 1394080500, "2014-03-06 10:20:00"},
      {newYork, "2014-03-06 10:20:00", 1394119200, "2014-03-06 10:20:00"},
      {newYork, "2014-07-06 10:20:00", 1404656400, "2014-07-06 10:20:00"},
      {berlin, "2014-03-30 03:00:00", 1396141200, "2014-03-30 03:00:00"},
      {"UTC0", "1970-01-01 00:00:00", 0, "1970-01-01 00:00:00"},
      {"UTC0", "1969-12-31 23:59:59 0", -1, "1969-12-31 23:59:59"},  // a time, not a failed conversion
      {"UTC0", "2040-01-01 00:00:00", 2208988800, "2040-01-01 00:00:00"},
  };
  for (const Row& row : rows) {
    Enter(row.zone);
    EXPECT_EQ(ParseTimeText(row.text), row.time) << row.zone << " " << row.text;
    EXPECT_EQ(FormatLocalTime(row.time), row.formatted) << row.zone;
  }
  // An hour that does not exist is moved to one that does.
  Enter(berlin);
  const std::optional<std::time_t> gap = ParseTimeText("2014-03-30 02:30:00");
  ASSERT_TRUE(gap.has_value());
  EXPECT_LE(std::abs(*gap - 1396141200), 1800);
  // Days are spans of time whatever the clock does: seven dates, one of which had 23 hours.
  const Now now = [] { return ParseTimeText("2014-04-02 12:00:00").value(); };
  EXPECT_TRUE(IsWithinDays("2014-03-26 12:00:00", 7, now));
  EXPECT_FALSE(IsWithinDays("2014-03-26 11:00:00", 7, now));
  Enter("UTC0");
}

}  // namespace
}  // namespace zt
