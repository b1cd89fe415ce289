#include "TimeText.h"

#include <gtest/gtest.h>

#include <limits>

namespace zt {
namespace {

constexpr std::time_t day = 86400;

TEST(TimeTextTest, ReadsPartsByTheirCount) {
  struct Row {
    std::string_view text;
    std::string_view read;  // as FormatLocalTime writes it
  };
  constexpr Row rows[] = {
      {"2014-03-06 10:20:30", "2014-03-06 10:20:00"},  // six parts: the second is not read
      {"2014-03-06 23:59:59 0", "2014-03-06 23:59:59"},
      {"2014-03-06 10:20", "2014-03-06 10:00:00"},
      {"::2014/3 - 6//", "2014-03-06 00:00:00"},
      {"2014-03-06T10:20:30", "2014-03-06 20:00:00"},  // "06T10" is the day
      {"2014-04-31 10", "2014-05-01 00:00:00"},
      {"2014-12-06 10:20:60", "2014-12-06 10:20:00"},  // what is not read is not checked
  };
  for (const Row& row : rows) {
    EXPECT_TRUE(IsTimeText(row.text));
    EXPECT_EQ(FormatLocalTime(ParseTimeText(row.text).value()), row.read) << row.text;
  }
  EXPECT_TRUE(IsTimeText("1900-01-01"));
  for (const char* text :
       {"2014-03-06 24:00:00", "2014-03-06 10:60:00", "2014-03-06 10:20:60 0", "2014-13-06", "2014-00-06", "2014-03-32",
        "2014-03-00", "2014-03", "1899-12-31", "never", "a-b-c", "2014-x-06"}) {
    EXPECT_FALSE(IsTimeText(text) || ParseTimeText(text)) << text;
  }
  EXPECT_EQ(FormatLocalTime(std::numeric_limits<std::time_t>::max()), "0000-00-00 -1:-1:-1");
}

TEST(TimeTextTest, CountsWholeDays) {
  struct Row {
    std::time_t age;
    int days;
    bool within;
    bool withinOf;  // of the same moment as a reference
  };
  constexpr Row rows[] = {
      {0, 7, true, true},         {7 * day - 1, 7, true, true},
      {7 * day, 7, false, false}, {-1 * day + 1, 7, true, true},  // truncated toward zero
      {-1 * day, 7, false, true},                                 // a future time is near a reference, never near now
      {0, 0, false, false},       {-3 * day, -1, false, true},
  };
  const std::time_t present = ParseTimeText("2014-06-15 12:00:00").value();
  const std::string reference = FormatLocalTime(present);
  const Now now = [present] { return present; };
  const Now otherwise = [present] { return present + 1000 * day; };
  for (const Row& row : rows) {
    // The eighth part keeps the seconds.
    const std::string text = FormatLocalTime(present - row.age) + " 0";
    EXPECT_EQ(IsWithinDays(text, row.days, now), row.within) << row.age << " " << row.days;
    EXPECT_EQ(IsWithinDaysOf(reference, text, row.days, otherwise), row.withinOf) << row.age << " " << row.days;
    EXPECT_EQ(IsWithinDaysOf("", text, row.days, now), row.withinOf) << row.age << " " << row.days;
  }
  EXPECT_FALSE(IsWithinDaysOf("never", reference, 7, now));
  for (const char* none : {"", "never"}) {
    EXPECT_FALSE(IsWithinDays(none, 7, now) || IsWithinDaysOf(reference, none, 7, now)) << none;
  }
}

}  // namespace
}  // namespace zt
