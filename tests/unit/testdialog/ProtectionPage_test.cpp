#include "ProtectionPage.h"

#include <gtest/gtest.h>

#include "MemorySettings.h"
#include "RunFakes.h"
#include "ZOLTLocalSetting.h"

namespace zt {
namespace {

TEST(ProtectionPage, SaysWhatARunWouldAsk) {
  using State = ProtectionState;
  struct Case {
    std::optional<State> state;
    std::optional<std::uint32_t> tonerLife;
    std::optional<std::string> country;
    const char* settings;
    const wchar_t* verdict;
  };
  static const std::string sent = "[History]\nLastPPSendTime_SN1=2026-11-20 10:00:00\n";
  const Case cases[] = {
      {State::On, 151, "12", "",
       L"A run now would ask the user to agree: protection is on, and the toner life 151 is past"},
      {State::On, 151, "59", "", L"A run now would switch protection off and ask nobody"},
      {State::On, 150, "12", "", L"A run now would ask nobody: protection is on, and the toner life 150 is within"},
      {State::On, 151, "12", "[Common]\nSBXPolicyReceived=1\nTonerMaxLife=200\n", L"A run now would ask nobody"},
      {State::Off, 99, "12", "", L"A run now would ask nobody: protection is off, and the toner is fresh"},
      {State::Off, 149, "12", "", L"A run now would ask nobody: protection is off, and the toner life 149 is below"},
      {State::Off, 150, "12", "", L"A run now would ask the user to agree: protection is off"},
      {State::Off, 150, "12", sent.c_str(), L"Unless the toner was changed since, a run now would be skipped"},
      {State::OT, std::nullopt, "", "", L"A run now would end: the protection of this printer cannot be switched."},
      {State::On, 151, "", "", L"A run now would end: the printer names no country."},
  };
  for (const Case& row : cases) {
    Calls calls;
    FakeDataProvider provider(calls);
    provider.protectionState = row.state;
    provider.tonerLife = row.tonerLife;
    provider.countryIndex = row.country;
    settingsFile = row.settings;
    std::optional<ZOLTLocalSetting> settings(std::in_place);
    settings->Load();
    ZOLTSkipChecker checker(&*settings, [] { return *ParseTimeText("2026-11-22 10:00:00"); });
    const ProtectionFacts facts = ReadProtection(provider, checker);
    EXPECT_TRUE(facts.verdict.starts_with(row.verdict)) << testing::PrintToString(facts.verdict);
    EXPECT_EQ(facts.switchable, row.state == State::On || row.state == State::Off);
    settings.reset();  // which would write what was changed
    EXPECT_EQ(settingsFile, row.settings);
  }
}

}  // namespace
}  // namespace zt
