#include "ZOLTSkipChecker.h"

#include <gtest/gtest.h>

#include "MemorySettings.h"
#include "TraceCapture.h"
#include "ZOLTLocalSetting.h"

namespace zt {
namespace {

constexpr std::time_t day = 86400;

class ZOLTSkipCheckerTest : public testing::Test {
 protected:
  void Store(const std::string& text) {
    settingsFile = text;
    settings.Load();
  }
  // What is stored, in lines.
  std::string Stored() const {
    settings.Save({});
    std::erase(settingsFile, '\r');
    return settingsFile;
  }

  // `ago` seconds before now, as stored.
  std::string Ago(std::time_t ago) const { return FormatLocalTime(present - ago); }

  const std::time_t present = ParseTimeText("2014-06-15 12:00:00").value();
  ZOLTLocalSetting settings;
  ZOLTSkipChecker checker{&settings, [this] { return present; }};
  TraceCapture trace;
};

TEST_F(ZOLTSkipCheckerTest, EachCheckHasItsHistoryItsDaysAndItsMessage) {
  struct Row {
    const char* key;
    const char* daysKey;  // null: seven days for ever
    int days;             // in force when nothing is stored
    const char* message;
    bool (*check)(ZOLTSkipChecker&, OptionalTimeText);
  };
  static constexpr char success[] = "3 Last svr success near! bye~";
  const Row rows[] = {
      {"LastCollectFailedTime_P1", nullptr, 7, "3 Last IO fail is near! Bye~",
       [](auto& c, auto) { return c.IsLastIOFailNear("P1"); }},
      {"LastServerFailedTime", nullptr, 7, "3 Last svr fail near! bye~",
       [](auto& c, auto) { return c.IsLastServerFailNear(); }},
      {"LastSendTime_P1", "SendIntervalDays", 30, success,
       [](auto& c, auto time) { return c.IsLastSendNear("P1", time); }},
      {"LastPPSendTime_P1", "TransmissionDuration", 7, success,
       [](auto& c, auto time) { return c.IsLastPPSendNear("P1", time); }},
      {"LastPPNormalTime_P1", "PPNormalSendInterval", 7, success,
       [](auto& c, auto time) { return c.IsLastPPNormalNear("P1", time); }},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.key);
    trace.lines.clear();
    const auto history = [&](const std::string& time) { return "[History]\n" + (row.key + ("=" + time)); };
    const auto isNear = [&](const std::string& stored, OptionalTimeText given = {}) {
      Store(stored);
      return row.check(checker, given);
    };
    EXPECT_FALSE(isNear(""));
    EXPECT_FALSE(isNear(history(Ago(row.days * day))));
    EXPECT_FALSE(isNear(history("never")));
    EXPECT_TRUE(isNear(history(Ago(row.days * day - 60))));
    EXPECT_EQ(trace.lines, (std::vector<std::string>{"2 Can't convert time : never", row.message}));
    if (row.daysKey) {
      EXPECT_FALSE(isNear(history(Ago(0)), ""));  // a given empty text is a text
      EXPECT_FALSE(isNear(history(Ago(0)), Ago(row.days * day)));
      EXPECT_TRUE(isNear("", Ago(0)));
      EXPECT_FALSE(isNear(std::string("[Common]\n") + row.daysKey + "=2\n" + history(Ago(2 * day))));
    }

    EXPECT_FALSE(isNear(history(Ago(-2 * day))));  // the future is not near ...
    ZOLTSkipChecker simulated(&settings, [this] { return present + 1000 * day; });
    simulated.SetReferenceTime(FormatLocalTime(present));
    EXPECT_TRUE(row.check(simulated, {}));  // ... except to a simulated date

    Store(history(Ago(0)));
    ZOLTSkipChecker disabled = checker;
    disabled.SetDontCheckSkip(true);
    EXPECT_FALSE(row.check(disabled, {}));
  }
}

TEST_F(ZOLTSkipCheckerTest, Records) {
  checker.SetDontCheckSkip(true);  // a test run leaves a normal history
  checker.RecordIOFail("P1");
  checker.RecordServerFail();
  checker.RecordSendSuccess(" P1\r\n", {});
  checker.RecordPPSend("P1", "2014-01-01");
  checker.RecordPPNormal("P1", "");
  EXPECT_EQ(Stored(),
            "[History]\nLastCollectFailedTime_P1=2014-06-15 12:00:00\nLastPPSendTime_P1=2014-01-01\n"
            "LastSendTime_P1=2014-06-15 12:00:00\nLastServerFailedTime=2014-06-15 12:00:00\n");
  Store("");
  checker.SetReferenceTime("2020-02-02 00:00:00");
  checker.RecordPPNormal("P1", {});
  EXPECT_EQ(Stored(), "[History]\nLastPPNormalTime_P1=2020-02-02 00:00:00\n");
}

TEST_F(ZOLTSkipCheckerTest, AnyPrinterIsFoundAgain) {
  // The last of them is a key like any other: it cannot reach into another section.
  for (const char* id : {"P=1", "P;1", "=", "[P]", "\xFF\x80", "", "P\r\n[Common]\r\nZOLTEnabled=2"}) {
    settingsFile.clear();
    ZOLTLocalSetting().SetLastCollectTime(id, "2014-03-06");  // saved at the end of the object
    settings.Load();
    EXPECT_TRUE(Stored().starts_with("[History]\nLastCollectTime")) << Stored();
    std::string time;
    EXPECT_TRUE(settings.GetLastCollectTime(id, time)) << id;
    EXPECT_EQ(time, "2014-03-06");
  }
}

TEST_F(ZOLTSkipCheckerTest, StoresOnlyWhatDiffers) {
  Store("[Common]\nPPAEnabled=\nZOLTEnabled=3\n");
  bool enabled = true;
  EXPECT_FALSE(checker.GetZOLTEnabled(enabled) || checker.GetPPAEnabled(enabled));
  checker.SetSendInterval(30);
  checker.SetPPNormalInterval(7);
  EXPECT_FALSE(checker.UpdateTonerChangeCount("P1", 0));
  checker.RecordTonerLife("", 5);
  EXPECT_EQ(Stored(), "[Common]\nPPAEnabled=\nZOLTEnabled=3\n");

  checker.SetZOLTEnabled(false);
  checker.SetPPAEnabled(true);
  EXPECT_TRUE(checker.GetZOLTEnabled(enabled) && !enabled);
  EXPECT_TRUE(checker.GetPPAEnabled(enabled) && enabled);
  checker.SetSendInterval(7);
  checker.SetPPNormalInterval(30);
  EXPECT_TRUE(checker.UpdateTonerChangeCount("P1", 4294967295));
  EXPECT_FALSE(checker.UpdateTonerChangeCount("P1", 4294967295));
  checker.RecordTonerLife("P1", 150);
  EXPECT_FALSE(checker.IsTonerLifeExceeded("P1"));
  checker.RecordTonerLife("P1", 4294967294);  // compared without sign
  EXPECT_TRUE(checker.IsTonerLifeExceeded("P1"));
  EXPECT_EQ(Stored(),
            "[Common]\nPPAEnabled=1\nPPNormalSendInterval=30\nSendIntervalDays=7\nZOLTEnabled=2\n"
            "[History]\nCurrentTonerLife_P1=-2\nTonerChangeCount_P1=-1\n");
}

TEST_F(ZOLTSkipCheckerTest, KeepsTheServerPolicy) {
  const std::string longCode(600, '5');
  const std::string zeros = "NSLanguageCode=\nSBXPolicyReceived=1\nTonerMaxLife=0\nTransmissionDuration=0\n";
  const auto after = [&](const std::string& stored, const ServerPolicy& policy) {
    Store("[Common]\n" + stored);
    checker.StoreServerPolicy(policy);
    return Stored().substr(std::string_view("[Common]\n").size());
  };
  EXPECT_EQ(after("", {}), "SBXPolicyReceived=1\n");
  EXPECT_EQ(after("", {14, "52", 200}),
            "NSLanguageCode=52\nSBXPolicyReceived=1\nTonerMaxLife=200\nTransmissionDuration=14\n");
  EXPECT_EQ(after("TransmissionDuration=14\n", {0, "", 0}), zeros);
  EXPECT_EQ(after(zeros, {14, "52", 200}), zeros);  // 0 and the empty text are never replaced
  EXPECT_EQ(after("", {7, longCode, 150}), "NSLanguageCode=" + longCode.substr(0, 519) + "\nSBXPolicyReceived=1\n");

  const std::string values = "[Common]\nTransmissionDuration=\nTonerMaxLife=42abc\nNSLanguageCode=" + longCode;
  Store(values);
  ServerPolicy policy{1, "x", 1};
  EXPECT_FALSE(checker.GetServerPolicy(policy));  // nothing was received: what stands in the file does not count
  EXPECT_EQ(policy, ServerPolicy());
  Store(values + "\nSBXPolicyReceived=1");
  EXPECT_TRUE(checker.GetServerPolicy(policy));
  EXPECT_EQ(policy, (ServerPolicy{0, longCode.substr(0, 519), 42}));
}

TEST_F(ZOLTSkipCheckerTest, DoesNothingWithoutSettings) {
  ZOLTSkipChecker none(nullptr, [this] { return present; });
  none.RecordIOFail("P1");
  none.RecordServerFail();
  none.RecordTonerLife("P1", 1);
  none.SetSendInterval(1);
  none.SetPPNormalInterval(1);
  none.SetZOLTEnabled(true);
  none.SetPPAEnabled(true);
  none.StoreServerPolicy({});
  bool enabled = true;
  ServerPolicy policy;
  EXPECT_FALSE(none.IsLastServerFailNear() || none.IsLastSendNear("P1", Ago(0)) || none.GetZOLTEnabled(enabled) ||
               none.GetPPAEnabled(enabled) || none.GetServerPolicy(policy) || none.UpdateTonerChangeCount("P1", 1) ||
               none.IsTonerLifeExceeded("P1"));
}

}  // namespace
}  // namespace zt
