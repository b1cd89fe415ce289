#include "TimeText.h"

#include <gtest/gtest.h>

#include <limits>

namespace zt {
namespace {

constexpr std::time_t hour = 3600;
constexpr std::time_t day = 24 * hour;

TEST(TimeTextTest, ReadsPartsByTheirCount) {
  struct Row {
    std::string_view text;
    std::string_view read;  // as FormatLocalTime writes it; empty: refused
  };
  constexpr Row rows[] = {
      {"2014-03-06 10:20:30", "2014-03-06 10:20:00"},  // six parts: the second is not read
      {"2014-03-06 10:20:30 0", "2014-03-06 10:20:30"},
      {"2014-03-06 10:20", "2014-03-06 10:00:00"},
      {"2014-03-06 10", "2014-03-06 00:00:00"},
      {"2014-03-06", "2014-03-06 00:00:00"},
      {"2014/3/6", "2014-03-06 00:00:00"},
      {"::2014 - 3 -- 6//", "2014-03-06 00:00:00"},
      {"2014-03-06T10:20:30", "2014-03-06 20:00:00"},  // "06T10" is the day
      {"2014-04-31", "2014-05-01 00:00:00"},
      {"2015-02-29 1:2:3 4", "2015-03-01 01:02:03"},
      {"2014-03-06 23:59:59 0", "2014-03-06 23:59:59"},
      {"2014-03-06 24:00:00", ""},
      {"2014-03-06 10:60:00", ""},
      {"2014-03-06 10:20:60 0", ""},
      {"2014-03-06 10:20:60", "2014-03-06 10:20:00"},  // what is not read is not checked
      {"2014-13-06", ""},
      {"2014-00-06", ""},
      {"2014-03-32", ""},
      {"2014-03-00", ""},
      {"2014-03", ""},
      {"1899-12-31 00:00:00", ""},
      {"14-03-06", ""},
      {"", ""},
      {"-- ::", ""},
      {"never", ""},
      {"a-b-c", ""},
      {"2014-x-06", ""},
      {"99999999999-99999999999-99999999999", ""},
  };
  for (const Row& row : rows) {
    const std::optional<std::time_t> time = ParseTimeText(row.text);
    ASSERT_EQ(time.has_value(), !row.read.empty()) << row.text;
    EXPECT_EQ(IsTimeText(row.text), !row.read.empty()) << row.text;
    EXPECT_EQ(time ? FormatLocalTime(*time) : "", row.read) << row.text;
  }
  EXPECT_TRUE(IsTimeText("1900-01-01"));
  EXPECT_EQ(FormatLocalTime(std::numeric_limits<std::time_t>::max()), "0000-00-00 -1:-1:-1");
  for (std::string_view text = "2014-03-06 10:20:30 0"; !text.empty(); text.remove_suffix(1)) {
    EXPECT_EQ(ParseTimeText(text).has_value(), text.size() > 9) << text;
  }
}

TEST(TimeTextTest, CountsWholeDays) {
  struct Row {
    std::time_t age;
    int days;
    bool within;
    bool withinOf;  // of the same moment as a reference
  };
  constexpr Row rows[] = {
      {0, 7, true, true},
      {6 * day + 23 * hour, 7, true, true},
      {7 * day - 1, 7, true, true},
      {7 * day, 7, false, false},
      {-1 * hour, 7, true, true},  // truncated toward zero
      {-1 * day + 1, 7, true, true},
      {-1 * day, 7, false, true},  // a future time is near a reference, never near now
      {-25 * hour, 7, false, true},
      {0, 0, false, false},
      {0, -1, false, false},
      {-25 * hour, -1, false, false},
      {-3 * day, -1, false, true},
      {29 * day, 30, true, true},
      {30 * day, 30, false, false},
  };
  const std::time_t present = ParseTimeText("2014-06-15 12:00:00").value();
  const std::string reference = FormatLocalTime(present);
  for (const Row& row : rows) {
    // The eighth part keeps the seconds.
    const std::string text = FormatLocalTime(present - row.age) + " 0";
    const Now now = [present] { return present; };
    const Now otherwise = [present] { return present + 1000 * day; };
    EXPECT_EQ(IsWithinDays(text, row.days, now), row.within) << row.age << " " << row.days;
    EXPECT_EQ(IsWithinDaysOf(reference, text, row.days, otherwise), row.withinOf) << row.age << " " << row.days;
    EXPECT_EQ(IsWithinDaysOf("", text, row.days, now), row.withinOf) << row.age << " " << row.days;
    EXPECT_FALSE(IsWithinDaysOf("no time", text, row.days, now));
    EXPECT_FALSE(IsWithinDaysOf(reference, "", row.days, now));
    EXPECT_FALSE(IsWithinDays("", row.days, now));
  }
}

}  // namespace
}  // namespace zt
