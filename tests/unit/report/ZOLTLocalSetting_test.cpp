#include "ZOLTLocalSetting.h"

#include <gtest/gtest.h>

#include <vector>

#include "MemorySettings.h"

namespace zt {
namespace {

TEST(ZOLTLocalSettingTest, EveryAccessorHasItsKey) {
  ZOLTLocalSetting settings;
  settings.SetZOLTEnabled(true);
  settings.SetPPAEnabled(false);
  settings.SetSendIntervalDays(14);
  settings.SetPPNormalSendInterval(-1);
  settings.SetSBXPolicyReceived(true);
  settings.SetTransmissionDuration(8);
  settings.SetNSLanguageCode("52");
  settings.SetTonerMaxLife(160);
  settings.SetLastCollectFailedTime("P", "a");
  settings.SetLastCollectTime("P", "b");
  settings.SetLastSendTime("P", "c");
  settings.SetLastServerFailedTime("d");
  settings.SetLastPPSendTime("P", "e");
  settings.SetLastPPNormalTime("", "f");
  settings.SetCurrentTonerLife("P", 5);
  settings.SetTonerChangeCount(" P\r\n", 6);
  settings.Save({});
  EXPECT_EQ(settingsFile,
            "[Common]\r\nNSLanguageCode=52\r\nPPAEnabled=2\r\nPPNormalSendInterval=-1\r\nSBXPolicyReceived=1\r\n"
            "SendIntervalDays=14\r\nTonerMaxLife=160\r\nTransmissionDuration=8\r\nZOLTEnabled=1\r\n"
            "[History]\r\nCurrentTonerLife_P=5\r\nLastCollectFailedTime_P=a\r\nLastCollectTime_P=b\r\n"
            "LastPPNormalTime=f\r\nLastPPSendTime_P=e\r\nLastSendTime_P=c\r\nLastServerFailedTime=d\r\n"
            "TonerChangeCount_P=6\r\n");

  bool on = false;
  EXPECT_TRUE(settings.GetZOLTEnabled(on) && on);
  EXPECT_TRUE(settings.GetPPAEnabled(on) && !on);
  const int numbers[] = {settings.GetSendIntervalDays(0),  settings.GetPPNormalSendInterval(0),
                         settings.GetSBXPolicyReceived(),  settings.GetTransmissionDuration(0),
                         settings.GetTonerMaxLife(0),      settings.GetCurrentTonerLife("P"),
                         settings.GetTonerChangeCount("P")};
  EXPECT_EQ(std::vector(std::begin(numbers), std::end(numbers)), (std::vector{14, -1, 1, 8, 160, 5, 6}));
  std::string texts[7];
  EXPECT_TRUE(settings.GetNSLanguageCode(texts[0]) && settings.GetLastCollectFailedTime("P", texts[1]) &&
              settings.GetLastCollectTime("P", texts[2]) && settings.GetLastSendTime("P", texts[3]) &&
              settings.GetLastServerFailedTime(texts[4]) && settings.GetLastPPSendTime("P", texts[5]) &&
              settings.GetLastPPNormalTime(" \r\n", texts[6]));
  EXPECT_EQ(std::vector(std::begin(texts), std::end(texts)),
            (std::vector<std::string>{"52", "a", "b", "c", "d", "e", "f"}));
  EXPECT_FALSE(settings.GetLastPPNormalTime("P", texts[6]));
  EXPECT_EQ(texts[6], "f");
}

TEST(ZOLTLocalSettingTest, ReadsWhatIsMissingOrOdd) {
  ZOLTLocalSetting settings;
  std::string codes;
  EXPECT_TRUE(settings.GetNSLanguageCode(codes));
  EXPECT_EQ(codes, "24, 59");
  EXPECT_EQ(settings.GetSendIntervalDays(30), 30);
  EXPECT_EQ(settings.GetTonerChangeCount("P1"), 0);
  settingsFile =
      "[Common]\nSendIntervalDays=42abc\nTonerMaxLife=abc\nTransmissionDuration=\nZOLTEnabled=3\nPPAEnabled=";
  settings.Load();
  EXPECT_EQ(settings.GetSendIntervalDays(30), 42);
  EXPECT_EQ(settings.GetTonerMaxLife(150), 0);
  EXPECT_EQ(settings.GetTransmissionDuration(7), 0);
  bool untouched = true;
  EXPECT_FALSE(settings.GetZOLTEnabled(untouched) || settings.GetPPAEnabled(untouched));
  EXPECT_TRUE(untouched);
}

TEST(ZOLTLocalSettingTest, AnyPrinterIsFoundAgain) {
  // The last of them is a key like any other: it cannot reach into another section.
  for (const char* id : {"P=1", "P;1", "=", "a b\tc", "[P]", "\xFF\x80", "P\r\n[Common]\r\nZOLTEnabled=2"}) {
    ZOLTLocalSetting settings;
    settings.SetLastSendTime(id, "2014-03-06 10:00:00");
    settings.Save({});
    settings.Load();
    std::string time;
    EXPECT_TRUE(settings.GetLastSendTime(id, time)) << id;
    EXPECT_EQ(time, "2014-03-06 10:00:00");
    bool enabled = true;
    EXPECT_FALSE(settings.GetZOLTEnabled(enabled));
  }
}

}  // namespace
}  // namespace zt
