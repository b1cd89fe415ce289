#include "RunRules.h"

#include <gtest/gtest.h>

#include "MemorySettings.h"
#include "ZOLTLocalSetting.h"

namespace zt {
namespace {

class RunRulesTest : public testing::Test {
 protected:
  // The sentences of the rules that stop a run.
  static std::vector<std::wstring> Stops(const std::vector<RuleLine>& lines) {
    std::vector<std::wstring> sentences;
    for (const RuleLine& line : lines) {
      if (line.stops) sentences.push_back(line.sentence);
    }
    return sentences;
  }
  History Read(const std::string& file) {
    settingsFile = file;
    settings.Load();
    return ReadHistory(standing, settings, checker);
  }

  Standing standing{.address = "10.0.0.7", .serialNumber = "SN", .queueName = "Q"};
  ZOLTLocalSetting settings;
  ZOLTSkipChecker checker{&settings, [] { return *ParseTimeText("2026-11-22 10:00:00"); }};
};

TEST_F(RunRulesTest, EachRuleSaysWhetherARunWouldEnd) {
  const History history = Read(
      "[Common]\nZOLTEnabled=2\nPPAEnabled=2\n[History]\nLastCollectFailedTime_10.0.0.7=2026-11-20 10:00:00\n"
      "LastServerFailedTime=2026-11-21 10:00:00\nLastSendTime_SN=2026-11-20 09:00:00\n"
      "LastPPSendTime_SN=2026-11-19 08:00:00\n");
  EXPECT_EQ(Stops(history.printVolume),
            (std::vector<std::wstring>{
                L"A run now would end: print-volume reporting is switched off, since the server ended the service.",
                L"A run now would be skipped until 2026-11-27 10:00:00, because this printer could not be read on "
                L"2026-11-20 10:00:00.",
                L"A run now would be skipped until 2026-11-28 10:00:00, because the server failed on 2026-11-21 "
                L"10:00:00.",
                L"A run now would be skipped: last report 2026-11-20 09:00:00, next due 2026-12-20 09:00:00."}));
  EXPECT_EQ(Stops(history.protection).size(), 2u);

  standing = {.disabledByAdministrator = true, .settingsUsable = false, .queueFound = false, .queueIsLocal = false};
  EXPECT_EQ(Stops(Read("").printVolume).size(), 4u);
  standing.virtualTest = true;
  EXPECT_EQ(Stops(Read("").printVolume).size(), 3u);
}

TEST_F(RunRulesTest, WhatNoLongerCountsStopsNothing) {
  const char* const old =
      "[History]\nLastCollectFailedTime_10.0.0.7=soon\nLastSendTime_SN=2026-10-01 10:00:00\nLastSendTime=2026-11-22\n";
  const History history = Read(old);
  EXPECT_TRUE(Stops(history.printVolume).empty());
  EXPECT_EQ(history.printVolume.at(5).sentence, L"The stored time \"soon\" is none, so it does not count.");
  EXPECT_EQ(history.printVolume.at(7).sentence, L"Last report 2026-10-01 10:00:00, so the next is due.");
  standing = {.skipRulesOff = true};
  EXPECT_EQ(Read(old).printVolume.size(), 6u);
  standing = {};  // the printer is not known: the bare key is nobody's
  EXPECT_TRUE(Stops(Read(old).printVolume).empty());
}

TEST_F(RunRulesTest, ClearingForgetsThisPrinterOnly) {
  Read("[History]\nLastSendTime_SN=x\nLastSendTime_OTHER=y\nCurrentTonerLife_Q=7\nLastServerFailedTime=z\n");
  ClearHistory(standing, settings);
  settings.Save({});
  std::erase(settingsFile, '\r');
  EXPECT_EQ(settingsFile,
            "[History]\nCurrentTonerLife_Q=0\nLastSendTime_OTHER=y\nLastSendTime_SN=\nLastServerFailedTime=z\n");
}

}  // namespace
}  // namespace zt
