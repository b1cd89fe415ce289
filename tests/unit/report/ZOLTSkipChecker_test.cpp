#include "ZOLTSkipChecker.h"

#include <gtest/gtest.h>

#include "FakeLocalSetting.h"
#include "TraceCapture.h"

namespace zt {
namespace {

using Values = std::map<std::string, std::string>;

class ZOLTSkipCheckerTest : public testing::Test {
 protected:
  static constexpr std::time_t day = 86400;

  // `ago` seconds before now, as stored.
  std::string Ago(std::time_t ago) const { return FormatLocalTime(present - ago); }

  const std::time_t present = ParseTimeText("2014-06-15 12:00:00").value();
  const std::string presentText = "2014-06-15 12:00:00";
  FakeLocalSetting settings;
  ZOLTSkipChecker checker{&settings, [this] { return present; }};
  TraceCapture trace;
};

TEST_F(ZOLTSkipCheckerTest, EachCheckHasItsHistoryItsDaysAndItsMessage) {
  struct Row {
    const char* key;
    const char* daysKey;  // null: seven days for ever
    int days;             // in force when nothing is stored
    std::function<bool(OptionalTimeText)> check;
    bool takesTime;
    std::string message;
  };
  const Row rows[] = {
      {"LastCollectFailedTime_P1", nullptr, 7, [&](auto) { return checker.IsLastIOFailNear("P1"); }, false,
       "3 Last IO fail is near! Bye~"},
      {"LastServerFailedTime", nullptr, 7, [&](auto) { return checker.IsLastServerFailNear(); }, false,
       "3 Last svr fail near! bye~"},
      {"LastSendTime_P1", "SendIntervalDays", 30, [&](auto time) { return checker.IsLastSendNear("P1", time); }, true,
       "3 Last svr success near! bye~"},
      {"LastPPSendTime_P1", "TransmissionDuration", 7, [&](auto time) { return checker.IsLastPPSendNear("P1", time); },
       true, "3 Last svr success near! bye~"},
      {"LastPPNormalTime_P1", "PPNormalSendInterval", 7,
       [&](auto time) { return checker.IsLastPPNormalNear("P1", time); }, true, "3 Last svr success near! bye~"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.key);
    trace.lines.clear();
    settings.values.clear();
    EXPECT_FALSE(row.check({}));  // no history

    settings.values[row.key] = Ago(row.days * day);
    EXPECT_FALSE(row.check({}));
    settings.values[row.key] = "1899-12-31 00:00:00";
    EXPECT_FALSE(row.check({}));
    EXPECT_EQ(trace.Texts(), std::vector<std::string>{"2 Can't convert time : 1899-12-31 00:00:00"});
    trace.lines.clear();
    settings.values[row.key] = Ago(row.days * day - 60);
    EXPECT_TRUE(row.check({}));
    EXPECT_EQ(trace.Texts(), std::vector<std::string>{row.message});

    if (row.takesTime) {
      EXPECT_FALSE(row.check(""));  // a given empty text is a text
      EXPECT_FALSE(row.check(Ago(row.days * day)));
      settings.values.erase(row.key);
      EXPECT_TRUE(row.check(Ago(0)));
    }
    if (row.daysKey) {
      settings.values[row.key] = Ago(2 * day);
      settings.values[row.daysKey] = "2";
      EXPECT_FALSE(row.check({}));
      settings.values[row.daysKey] = "3";
      EXPECT_TRUE(row.check({}));
    }

    settings.values[row.key] = Ago(-2 * day);
    EXPECT_FALSE(row.check({}));  // the future is not near ...
    ZOLTSkipChecker simulated(&settings, [this] { return present + 1000 * day; });
    std::swap(simulated, checker);
    checker.SetReferenceTime(presentText);
    EXPECT_TRUE(row.check({}));  // ... except to a simulated date
    checker.SetReferenceTime("no time");
    EXPECT_FALSE(row.check({}));
    std::swap(simulated, checker);

    settings.values[row.key] = Ago(0);
    ZOLTSkipChecker disabled(&settings, [this] { return present; });
    disabled.DisableChecks();
    std::swap(disabled, checker);
    EXPECT_FALSE(row.check({}));
    std::swap(disabled, checker);
  }
}

TEST_F(ZOLTSkipCheckerTest, RecordsNowOrTheGivenTime) {
  checker.DisableChecks();  // a test run leaves a normal history
  checker.RecordIOFail("P1");
  checker.RecordServerFail();
  checker.RecordSendSuccess("P1", {});
  checker.RecordPPSend("P1", "2014-01-01");
  checker.RecordPPNormal("P1", "");
  EXPECT_EQ(settings.values, (Values{{"LastCollectFailedTime_P1", presentText},
                                     {"LastServerFailedTime", presentText},
                                     {"LastSendTime_P1", presentText},
                                     {"LastPPSendTime_P1", "2014-01-01"}}));
  settings.values.clear();
  checker.SetReferenceTime("2020-02-02 00:00:00");
  checker.RecordIOFail("P1");
  checker.RecordSendSuccess("P1", "");
  checker.RecordPPNormal("P1", {});
  EXPECT_EQ(settings.values, (Values{{"LastCollectFailedTime_P1", "2020-02-02 00:00:00"},
                                     {"LastPPNormalTime_P1", "2020-02-02 00:00:00"}}));
}

TEST_F(ZOLTSkipCheckerTest, StoresOnlyWhatDiffers) {
  checker.SetSendInterval(30);
  checker.SetPPNormalInterval(7);
  EXPECT_FALSE(checker.UpdateTonerChangeCount("P1", 0));
  checker.RecordTonerLife("", 5);
  EXPECT_EQ(settings.values, Values{});
  checker.SetSendInterval(7);
  checker.SetPPNormalInterval(30);
  EXPECT_TRUE(checker.UpdateTonerChangeCount("P1", 4294967295));
  EXPECT_FALSE(checker.UpdateTonerChangeCount("P1", 4294967295));
  EXPECT_EQ(settings.values,
            (Values{{"SendIntervalDays", "7"}, {"PPNormalSendInterval", "30"}, {"TonerChangeCount_P1", "-1"}}));
  EXPECT_EQ(checker.GetSendInterval(1), 7);
  EXPECT_EQ(checker.GetPPNormalInterval(1), 30);
}

TEST_F(ZOLTSkipCheckerTest, ComparesTheTonerLifeUnsigned) {
  struct Row {
    std::uint32_t life;
    const char* limit;
    bool exceeded;
  };
  for (const Row& row : {Row{151, "", true}, Row{150, "", false}, Row{4294967295, "", true}, Row{5, "-1", false}}) {
    settings.values.clear();
    if (*row.limit) settings.values["TonerMaxLife"] = row.limit;
    checker.RecordTonerLife("P1", row.life);
    EXPECT_EQ(checker.IsTonerLifeExceeded("P1"), row.exceeded) << row.life;
  }
}

TEST_F(ZOLTSkipCheckerTest, KeepsTheServerPolicy) {
  const std::string longCode(600, '5');
  struct Row {
    Values stored;
    ServerPolicy policy;
    Values after;  // what was added or changed
  };
  const Row rows[] = {
      {{}, {}, {{"SBXPolicyReceived", "1"}}},
      {{},
       {14, "52", 200},
       {{"SBXPolicyReceived", "1"}, {"TransmissionDuration", "14"}, {"NSLanguageCode", "52"}, {"TonerMaxLife", "200"}}},
      // 0 and the empty text are never replaced.
      {{{"TransmissionDuration", "0"}, {"NSLanguageCode", ""}, {"TonerMaxLife", "0"}},
       {14, "52", 200},
       {{"SBXPolicyReceived", "1"}}},
      {{{"TransmissionDuration", "14"}},
       {0, "", 0},
       {{"SBXPolicyReceived", "1"}, {"TransmissionDuration", "0"}, {"NSLanguageCode", ""}, {"TonerMaxLife", "0"}}},
      {{}, {7, longCode, 150}, {{"SBXPolicyReceived", "1"}, {"NSLanguageCode", longCode.substr(0, 519)}}},
  };
  for (const Row& row : rows) {
    settings.values = row.stored;
    checker.StoreServerPolicy(row.policy);
    Values expected = row.after;
    expected.insert(row.stored.begin(), row.stored.end());
    EXPECT_EQ(settings.values, expected);
  }

  settings.values = {{"TransmissionDuration", "14"}, {"NSLanguageCode", longCode}, {"TonerMaxLife", "200"}};
  ServerPolicy policy{1, "x", 1};
  EXPECT_FALSE(checker.GetServerPolicy(policy));  // nothing was received: what stands in the file does not count
  EXPECT_EQ(policy, ServerPolicy());
  settings.values["SBXPolicyReceived"] = "1";
  EXPECT_TRUE(checker.GetServerPolicy(policy));
  EXPECT_EQ(policy, (ServerPolicy{14, longCode.substr(0, 519), 200}));
}

TEST_F(ZOLTSkipCheckerTest, SwitchesTheServices) {
  bool enabled = true;
  EXPECT_FALSE(checker.GetZOLTEnabled(enabled) || checker.GetPPAEnabled(enabled));
  checker.SetZOLTEnabled(false);
  EXPECT_TRUE(checker.GetZOLTEnabled(enabled));
  EXPECT_FALSE(enabled);
  checker.SetPPAEnabled(true);
  EXPECT_TRUE(checker.GetPPAEnabled(enabled));
  EXPECT_TRUE(enabled);
}

TEST_F(ZOLTSkipCheckerTest, DoesNothingWithoutSettings) {
  ZOLTSkipChecker none(nullptr, [this] { return present; });
  none.RecordIOFail("P1");
  none.RecordServerFail();
  none.RecordSendSuccess("P1", {});
  none.RecordPPSend("P1", {});
  none.RecordPPNormal("P1", {});
  none.RecordTonerLife("P1", 1);
  none.SetSendInterval(1);
  none.SetPPNormalInterval(1);
  none.SetZOLTEnabled(true);
  none.SetPPAEnabled(true);
  none.StoreServerPolicy({1, "1", 1});
  EXPECT_FALSE(none.IsLastIOFailNear("P1") || none.IsLastServerFailNear() || none.IsLastSendNear("P1", presentText) ||
               none.IsLastPPSendNear("P1", presentText) || none.IsLastPPNormalNear("P1", presentText));
  EXPECT_FALSE(none.UpdateTonerChangeCount("P1", 1) || none.IsTonerLifeExceeded("P1"));
  EXPECT_EQ(none.GetSendInterval(30), 30);
  EXPECT_EQ(none.GetPPNormalInterval(7), 7);
  bool untouched = true;
  EXPECT_FALSE(none.GetZOLTEnabled(untouched) || none.GetPPAEnabled(untouched));
  EXPECT_TRUE(untouched);
  ServerPolicy policy{1, "x", 1};
  EXPECT_FALSE(none.GetServerPolicy(policy));
  EXPECT_EQ(policy, (ServerPolicy{1, "x", 1}));
}

}  // namespace
}  // namespace zt
