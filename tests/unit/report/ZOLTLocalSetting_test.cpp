#include "ZOLTLocalSetting.h"

#include <gtest/gtest.h>

#include "MemorySettings.h"

namespace zt {
namespace {

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
  for (const char* id : {"P=1", "P;1", "=", "a b\tc", "[P]", "\xFF\x80", "P\r\n[Common]\r\nZOLTEnabled=2", ""}) {
    settingsFile.clear();
    // What was set is saved at the end of the object.
    ZOLTLocalSetting().SetLastCollectTime(id, "2014-03-06 10:00:00");
    EXPECT_TRUE(settingsFile.starts_with("[History]\r\nLastCollectTime")) << settingsFile;
    ZOLTLocalSetting settings;
    settings.Load();
    std::string time;
    EXPECT_TRUE(settings.GetLastCollectTime(id, time)) << id;
    EXPECT_EQ(time, "2014-03-06 10:00:00");
    bool enabled = true;
    EXPECT_FALSE(settings.GetZOLTEnabled(enabled));
  }
}

}  // namespace
}  // namespace zt
