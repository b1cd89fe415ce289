#include "ServerAnswer.h"

#include <gtest/gtest.h>

namespace zt {
namespace {

TEST(ServerAnswerTest, ReadsNumbersWhole) {
  struct Row {
    const char* text;
    std::optional<int> days;
  };
  const Row rows[] = {{"14", 14},
                      {" 14\r\n", 14},
                      {"-1", -1},
                      {"0", 0},
                      {"", std::nullopt},
                      {"14d", std::nullopt},
                      {"1 4", std::nullopt},
                      {"x", std::nullopt},
                      {"-", std::nullopt}};
  for (const Row& row : rows) {
    ServerAnswer answer;
    answer.SetPostIntervalDays(row.text);
    answer.SetTonerMaxLife(row.text);
    EXPECT_EQ(answer.GetPostIntervalDays(), row.days) << row.text;
    EXPECT_EQ(answer.GetTonerMaxLife(), row.days) << row.text;
  }
  ServerAnswer answer;
  EXPECT_FALSE(answer.GetPostIntervalDays().has_value() || answer.GetLastDate().has_value());
}

}  // namespace
}  // namespace zt
