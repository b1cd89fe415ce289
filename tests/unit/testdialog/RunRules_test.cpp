#include "RunRules.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "MemorySettings.h"
#include "ZOLTLocalSetting.h"

namespace zt {
namespace {

TEST(RunRules, EachRuleSaysWhetherARunWouldEnd) {
  constexpr const char* kStored =
      "[Common]\nZOLTEnabled=2\n[History]\nLastCollectFailedTime_A=2026-11-20 10:00:00\nLastPPSendTime_SN=soon\n"
      "LastSendTime=2026-11-22\nLastSendTime_SN=2026-11-20 09:00:00\nLastServerFailedTime=2026-11-01 10:00:00\n";
  settingsFile = kStored;
  ZOLTLocalSetting settings;
  settings.Load();
  ZOLTSkipChecker checker(&settings, [] { return *ParseTimeText("2026-11-22 10:00:00"); });
  Standing standing{.address = "A", .serialNumber = "SN", .queueName = "Q"};
  std::wstring ends;
  std::wstring goesOn;
  const auto read = [&] {
    ends = goesOn = L"";
    const History history = ReadHistory(standing, settings, checker);
    for (const std::vector<RuleLine>& lines : {history.printVolume, history.protection}) {
      for (const RuleLine& line : lines) (line.stops ? ends : goesOn) += line.sentence + L"\n";
    }
  };
  read();
  EXPECT_EQ(ends,
            L"A run now would end: print-volume reporting is switched off, since the server ended the service.\n"
            L"A run now would be skipped until 2026-11-27 10:00:00, because this printer could not be read on "
            L"2026-11-20 10:00:00.\n"
            L"A run now would be skipped: last report 2026-11-20 09:00:00, next due 2026-12-20 09:00:00.\n");
  EXPECT_NE(goesOn.find(L"The server failed on 2026-11-01 10:00:00, which no longer counts."), std::wstring::npos);
  EXPECT_NE(goesOn.find(L"The stored time \"soon\" is none, so it does not count."), std::wstring::npos);

  ClearHistory(standing, settings);
  read();
  EXPECT_EQ(ends.find(L"A run now would be skipped"), std::wstring::npos);
  settings.SetLastSendTime("SN", "2026-11-22");
  standing = {.disabledByAdministrator = true};  // and an unknown printer, whose history is not that of the bare key
  read();
  EXPECT_EQ(std::ranges::count(ends, L'\n'), 3) << testing::PrintToString(ends);
}

}  // namespace
}  // namespace zt
