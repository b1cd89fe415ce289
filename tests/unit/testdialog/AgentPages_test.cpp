#include <gtest/gtest.h>

#include <algorithm>

#include "Diagnosis.h"
#include "MemorySettings.h"
#include "ProtectionPage.h"
#include "RunFakes.h"
#include "RunRules.h"
#include "ServerPage.h"
#include "TraceLines.h"
#include "ZOLTLocalSetting.h"

namespace zt {
namespace {

TEST(ServerPage, SaysWhatWasSentAndWhatItMeans) {
  struct Case {
    ServerQuestion question;
    FormReply reply;
    std::vector<std::wstring> rows;
    bool open = true;
  };
  using enum ServerQuestion;
  using enum FormDelivery;
  const Case cases[] = {
      {CheckDate,
       {Answered, "<root><LastDate>2026-11-20</LastDate></root>", 200, 0},
       {L"URL|http://s/CheckDate.aspx", L"Request body|SerialNumber=A%20B", L"HTTP status|200", L"Understood|yes",
        L"Last report|2026-11-20"}},
      {CheckDate, {Answered, "", 404, 0}, {L"Understood|no", L"A run|would store a failure of the server"}},
      {CheckSBX, {NotSent, "", 0, 99}, {L"Delivery|failed", L"A run|would go on with the limits that it knows"}},
      {CheckSBX, {Answered, "<root><Result>NOMORESERVICE</Result></root>", 200, 0}, {L"Service|ended"}},
      {PostReport, {}, {L"Request body|data=%3ca%3e&test=1", L"Delivery|cancelled"}, false},
  };
  for (const Case& row : cases) {
    bool sent = false;
    const auto post = [&](const std::string&, std::string_view) { return sent = true, row.reply; };
    const ServerRequest request{row.question, "http://s/", "A B", "M", ReportKind::PrintVolume, "<a>"};
    std::vector<std::wstring> rows;
    for (const Row& shown : AskServer(request, post, [&] { return row.open; })) {
      rows.push_back(shown.label + L"|" + shown.value);
    }
    EXPECT_EQ(sent, row.open);
    for (const std::wstring& wanted : row.rows) {
      EXPECT_EQ(std::ranges::count(rows, wanted), 1) << testing::PrintToString(wanted);
    }
  }
}

TEST(ProtectionPage, SaysWhatARunWouldAsk) {
  using State = ProtectionState;
  const char* const sent = "[History]\nLastPPSendTime_SN1=2026-11-20 10:00:00\n";
  const char* const limit200 = "[Common]\nSBXPolicyReceived=1\nTonerMaxLife=200\n";
  const std::tuple<State, std::uint32_t, const char*, const char*, const wchar_t*> cases[] = {
      {State::On, 151, "12", "", L"A run now would ask the user to agree: protection is on, and the toner life 151"},
      {State::On, 151, "59", "", L"A run now would switch protection off and ask nobody"},
      {State::On, 150, "12", "", L"A run now would ask nobody: protection is on, and the toner life 150 is within"},
      {State::On, 151, "12", limit200, L"A run now would ask nobody"},
      {State::Off, 99, "12", "", L"A run now would ask nobody: protection is off, and the toner is fresh"},
      {State::Off, 149, "12", "", L"A run now would ask nobody: protection is off, and the toner life 149 is below"},
      {State::Off, 150, "12", "", L"A run now would ask the user to agree: protection is off"},
      {State::Off, 150, "12", sent, L"Unless the toner was changed since, a run now would be skipped"},
      {State::OT, 151, "", "", L"A run now would end: the protection of this printer cannot be switched."},
      {State::On, 151, "", "", L"A run now would end: the printer names no country."}};
  for (const auto& [state, life, country, stored, verdict] : cases) {
    RunWorld provider;
    provider.protectionState = state;
    provider.tonerLife = life;
    provider.countryIndex = country;
    settingsFile = stored;
    std::optional<ZOLTLocalSetting> settings(std::in_place);
    settings->Load();
    ZOLTSkipChecker checker(&*settings, [] { return *ParseTimeText("2026-11-22 10:00:00"); });
    const ProtectionFacts facts = ReadProtection(provider, checker);
    EXPECT_TRUE(facts.verdict.starts_with(verdict)) << testing::PrintToString(facts.verdict);
    settings.reset();  // which would write what was changed
    EXPECT_EQ(settingsFile, stored);
  }
}

TEST(RunRules, EachRuleSaysWhetherARunWouldEnd) {
  constexpr const char* kStored =
      "[Common]\nZOLTEnabled=2\n[History]\nLastCollectFailedTime_A=2026-11-20 10:00:00\nLastPPSendTime_SN=soon\n"
      "LastSendTime=2026-11-22\nLastSendTime_SN=2026-11-20 09:00:00\nLastServerFailedTime=2026-11-01 10:00:00\n";
  settingsFile = kStored;
  ZOLTLocalSetting settings;
  settings.Load();
  ZOLTSkipChecker checker(&settings, [] { return *ParseTimeText("2026-11-22 10:00:00"); });
  Standing standing{.address = "A", .serialNumber = "SN", .queueName = "Q"};
  std::wstring ends, goesOn;
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

TEST(Diagnosis, OneLineForEachRowAndNoCommunity) {
  TraceLines lines;
  for (const Severity severity : {Severity::Error, Severity::Information, Severity::Warning, Severity::Error}) {
    lines.Add({severity, L"s3c " + std::to_wstring(static_cast<int>(severity))});
  }
  EXPECT_EQ(MakeDiagnosis({{L"Printer", {{L"SNMP", L"s3cs3c", L"s3c"}, {L"Date", L"", L"not told"}}, L"a\n\r\nb"},
                           {L"Trace", {}, lines.Text(Severity::Warning, 2)}},
                          L"s3c"),
            L"== Printer ==\r\nSNMP: ********** (*****)\r\nDate: not told\r\na\r\n\r\nb\r\n"
            L"\r\n== Trace ==\r\n***** 3\r\n***** 2\r\n");
}

}  // namespace
}  // namespace zt
