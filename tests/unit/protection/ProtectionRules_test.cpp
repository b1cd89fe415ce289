#include "ProtectionRules.h"

#include <gtest/gtest.h>

#include "ProtectionState.h"

namespace zt {
namespace {

TEST(ProtectionRulesTest, QuestionFollowsStateLifeAndCountry) {
  struct Row {
    ProtectionState state;
    std::uint32_t life;
    int limit;
    const char* country;
    Question question;
  };
  constexpr Row rows[] = {
      {ProtectionState::On, 151, 150, "52", Question::Ask},
      {ProtectionState::On, 150, 150, "52", Question::None},
      {ProtectionState::Off, 151, 150, "52", Question::None},  // asked later, after the data is collected
      {ProtectionState::On, 151, 150, "24", Question::Decline},
      {ProtectionState::On, 151, 150, "59", Question::Decline},
      {ProtectionState::On, 151, 150, "2", Question::Ask},
      {ProtectionState::On, 151, 150, "Unknown", Question::Decline},
      {ProtectionState::On, 151, 150, "(Unknown 7)", Question::Decline},
      {ProtectionState::On, 151, 150, "unknown", Question::Ask},
      {ProtectionState::On, 150, 150, "24", Question::None},
      {ProtectionState::On, 4294967295, 150, "52", Question::Ask},  // without sign
      {ProtectionState::On, 151, -1, "52", Question::None},
      {ProtectionState::On, 1, 0, "52", Question::Ask},
  };
  for (const Row& row : rows) {
    ServerPolicy policy;
    policy.tonerMaxLife = row.limit;
    EXPECT_EQ(QuestionForProtectedPrinter(row.state, row.life, policy, row.country), row.question)
        << row.life << " " << row.limit << " " << row.country;
  }
}

TEST(ProtectionRulesTest, CountriesAreListedWhole) {
  struct Row {
    const char* list;
    const char* country;
    bool listed;
  };
  constexpr Row rows[] = {{"24, 59", "24", true},    {"24, 59", "59", true}, {"24,59", "59", true},
                          {" 24 ,\t59", "24", true}, {"24, 59", "2", false}, {"24, 59", "4, 5", false},
                          {"24, 59", "", false},     {"", "24", false},      {"", "", false},
                          {",,24,", "24", true},     {"124", "24", false},   {"52", "520", false}};
  for (const Row& row : rows) EXPECT_EQ(IsCountryListed(row.list, row.country), row.listed) << row.list;
}

TEST(ProtectionRulesTest, AnAnswerReplacesWhatItHolds) {
  const ServerPolicy stored{14, "1, 2", 200};
  ServerAnswer answer;
  EXPECT_EQ(MergePolicy(stored, answer), (ServerPolicy{14, "1, 2", 150}));
  answer.SetTransmissionDuration("3");
  answer.SetNSLanguageCode("52");
  answer.SetTonerMaxLife("110");
  EXPECT_EQ(MergePolicy(stored, answer), (ServerPolicy{3, "52", 110}));
  answer.SetTransmissionDuration("three");
  answer.SetTonerMaxLife("");
  EXPECT_EQ(MergePolicy(stored, answer), (ServerPolicy{14, "52", 150}));
}

TEST(ProtectionRulesTest, LimitsHaveEdges) {
  EXPECT_TRUE(IsTonerFresh(99));
  EXPECT_FALSE(IsTonerFresh(100));
  struct Row {
    std::uint32_t life;
    int limit;
    bool below;
  };
  for (const Row& row : {Row{149, 150, true}, Row{150, 150, false}, Row{149, 0, false}, Row{149, -1, true}}) {
    EXPECT_EQ(IsBelowLimit(row.life, {7, "", row.limit}), row.below) << row.life << " " << row.limit;
  }
}

}  // namespace
}  // namespace zt
