#include "ServerAnswer.h"

#include <gtest/gtest.h>

namespace zt {
namespace {

TEST(ServerAnswerTest, ReadsNumbersWhole) {
  ServerAnswer answer;
  EXPECT_FALSE(answer.GetPostIntervalDays().has_value() || answer.GetLastDate().has_value());
  answer.SetPostIntervalDays(" 14\r\n");
  EXPECT_EQ(answer.GetPostIntervalDays(), 14);
  for (const char* none : {"", "14d", "1 4", "x"}) {
    answer.SetPostIntervalDays(none);
    EXPECT_EQ(answer.GetPostIntervalDays(), std::nullopt) << none;
  }
}

}  // namespace
}  // namespace zt
