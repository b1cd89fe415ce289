#include "RunRules.h"

#include <utility>

#include "ServerPolicy.h"
#include "Words.h"

namespace zt {
namespace {

constexpr std::wstring_view kNoAddress = L"Not known: the printer's address was not found.";
constexpr std::wstring_view kNoSerialNumber = L"Not known: the printer's serial number was not read.";

// RuleWords are the sentences of a rule that the skip checker decides. "{last}" stands for the time that is stored,
// "{until}" for the one from which on it does not count.
struct RuleWords {
  SkipRule rule;
  std::wstring_view nothing;  // nothing is stored
  std::wstring_view skips;
  std::wstring_view passes;  // what is stored no longer counts
};
constexpr RuleWords kIOFail = {
    SkipRule::LastIOFail, L"No failure to read this printer is stored.",
    L"A run now would be skipped until {until}, because this printer could not be read on {last}.",
    L"This printer could not be read on {last}, which no longer counts."};
constexpr RuleWords kServerFail = {SkipRule::LastServerFail, L"No failure of the server is stored.",
                                   L"A run now would be skipped until {until}, because the server failed on {last}.",
                                   L"The server failed on {last}, which no longer counts."};
constexpr RuleWords kSend = {SkipRule::LastSend, L"No report of this printer is stored, so one is due.",
                             L"A run now would be skipped: last report {last}, next due {until}.",
                             L"Last report {last}, so the next is due."};
constexpr RuleWords kPPSend = {
    SkipRule::LastPPSend, L"No protection report of this printer is stored, so one is due.",
    L"A run now would be skipped, unless the toner was changed since: last protection report "
    L"{last}, next due {until}.",
    L"Last protection report {last}, so the next is due."};

std::wstring Filled(std::wstring_view sentence, std::wstring_view name, std::string_view time) {
  std::wstring filled(sentence);
  const std::size_t at = filled.find(name);
  if (at != std::wstring::npos) filled.replace(at, name.size(), Shown(time));
  return filled;
}

RuleLine LineOf(const RuleWords& words, const ZOLTSkipChecker& skipChecker, std::string_view id) {
  const SkipDecision decision = skipChecker.Decide(words.rule, id);
  if (decision.last.empty()) return {std::wstring(words.nothing)};
  const std::wstring_view sentence = !decision.until  ? L"The stored time \"{last}\" is none, so it does not count."
                                     : decision.skips ? words.skips
                                                      : words.passes;
  return {Filled(Filled(sentence, L"{until}", decision.until.value_or("")), L"{last}", decision.last), decision.skips};
}

RuleLine Checked(bool holds, const wchar_t* ends, const wchar_t* passes) {
  return holds ? RuleLine{passes} : RuleLine{std::wstring(L"A run now would end: ") + ends, true};
}

// What both runs look at first.
std::vector<RuleLine> FirstRules(const Standing& standing) {
  return {
      Checked(standing.queueFound, L"there is no such print queue on this computer.", L"The print queue is there."),
      Checked(!standing.disabledByAdministrator, L"disabled by the administrator (Disable in the registry).",
              L"Not disabled by the administrator."),
      Checked(standing.settingsUsable, L"the settings file cannot be read or written.",
              L"The settings file can be read and written."),
  };
}

RuleLine NoSkipRules() {
  return {L"No skip rule counts and the server is not asked: the administrator has set DontCheckSkip in the registry."};
}

std::vector<RuleLine> PrintVolumeRules(const Standing& standing, ZOLTSkipChecker& skipChecker) {
  std::vector<RuleLine> lines = FirstRules(standing);
  bool enabled = true;
  skipChecker.GetZOLTEnabled(enabled);
  lines.push_back(Checked(enabled, L"print-volume reporting is switched off, since the server ended the service.",
                          L"Print-volume reporting is not switched off."));
  lines.push_back(standing.virtualTest
                      ? RuleLine{L"Canned data stand in for the printer: the administrator has set VirtualTest."}
                      : Checked(standing.queueIsLocal, L"the queue leads to a printer that another computer shares.",
                                L"The queue is one of this computer."));
  if (standing.skipRulesOff) {
    lines.push_back(NoSkipRules());
    return lines;
  }
  lines.push_back(standing.address.empty() ? RuleLine{L"Whether this printer failed lately is not known: no address."}
                                           : LineOf(kIOFail, skipChecker, standing.address));
  lines.push_back(LineOf(kServerFail, skipChecker, {}));
  lines.push_back(standing.serialNumber.empty()
                      ? RuleLine{L"When the last report was sent is not known: the serial number was not read."}
                      : LineOf(kSend, skipChecker, standing.serialNumber));
  lines.push_back({L"The server is asked last, and may want no report yet (page Server)."});
  return lines;
}

std::vector<RuleLine> ProtectionRunRules(const Standing& standing, ZOLTSkipChecker& skipChecker) {
  std::vector<RuleLine> lines = FirstRules(standing);
  bool enabled = true;
  skipChecker.GetPPAEnabled(enabled);
  lines.push_back(Checked(enabled, L"product protection is switched off, since the server ended the service.",
                          L"Product protection is not switched off."));
  lines.push_back({L"State, toner life and country of the printer decide whom it asks (page Protection)."});
  if (standing.skipRulesOff) {
    lines.push_back(NoSkipRules());
  } else if (standing.serialNumber.empty()) {
    lines.push_back({L"When the last protection report was sent is not known: the serial number was not read."});
  } else {
    lines.push_back(LineOf(kPPSend, skipChecker, standing.serialNumber));
  }
  return lines;
}

Row SwitchRow(std::wstring label, const IZOLTLocalSetting& settings,
              bool (IZOLTLocalSetting::*get)(bool& enabled) const) {
  bool on = true;
  const bool stored = (settings.*get)(on);
  return {std::move(label), on ? L"on" : L"off", stored ? L"" : L"Never switched."};
}

Row TimeRow(std::wstring label, std::string_view time) {
  return {std::move(label), time.empty() ? L"never" : Shown(time), L""};
}

using StoredTime = bool (IZOLTLocalSetting::*)(std::string_view id, std::string& time) const;

std::string TimeOf(const IZOLTLocalSetting& settings, StoredTime get, std::string_view id) {
  std::string time;
  (settings.*get)(id, time);
  return time;
}

// Without an identifier the bare key would be read, which is no printer's.
Row PrinterRow(std::wstring label, const IZOLTLocalSetting& settings, StoredTime get, std::string_view id,
               std::wstring_view whyUnknown) {
  if (id.empty()) return {std::move(label), L"", std::wstring(whyUnknown)};
  return TimeRow(std::move(label), TimeOf(settings, get, id));
}

std::vector<Row> StoredRows(const Standing& standing, const IZOLTLocalSetting& settings, ZOLTSkipChecker& skipChecker) {
  std::string serverFailure;
  settings.GetLastServerFailedTime(serverFailure);
  const int days = settings.GetSendIntervalDays(0);
  ServerPolicy policy;
  const std::wstring source =
      skipChecker.GetServerPolicy(policy) ? L"As the server gave it." : L"Default: the server gave none yet.";
  std::vector<Row> rows = {
      SwitchRow(L"Print-volume reporting", settings, &IZOLTLocalSetting::GetZOLTEnabled),
      SwitchRow(L"Product protection", settings, &IZOLTLocalSetting::GetPPAEnabled),
      {L"Days between reports", days == 0 ? L"" : std::to_wstring(days),
       days == 0 ? L"The default: the server gave none yet." : L""},
      {L"Days between protection reports", std::to_wstring(policy.transmissionDuration), source},
      {L"Toner life limit", std::to_wstring(static_cast<std::uint32_t>(policy.tonerMaxLife)), source},
      {L"Countries where nobody is asked", Shown(policy.nsLanguageCode), source},
      TimeRow(L"Last failure of the server", serverFailure),
      PrinterRow(L"Last failure to read this printer", settings, &IZOLTLocalSetting::GetLastCollectFailedTime,
                 standing.address, kNoAddress),
      PrinterRow(L"Last report of this printer", settings, &IZOLTLocalSetting::GetLastSendTime, standing.serialNumber,
                 kNoSerialNumber),
      PrinterRow(L"Last protection report of this printer", settings, &IZOLTLocalSetting::GetLastPPSendTime,
                 standing.serialNumber, kNoSerialNumber),
  };
  if (!standing.queueName.empty()) {
    const auto life = static_cast<std::uint32_t>(settings.GetCurrentTonerLife(standing.queueName));
    rows.push_back({L"Toner life, as a run last read it", std::to_wstring(life), L""});
  }
  if (!standing.serialNumber.empty()) {
    const auto count = static_cast<std::uint32_t>(settings.GetTonerChangeCount(standing.serialNumber));
    rows.push_back({L"Toner change count, as a run last read it", std::to_wstring(count), L""});
  }
  return rows;
}

}  // namespace

History ReadHistory(const Standing& standing, const IZOLTLocalSetting& settings, ZOLTSkipChecker& skipChecker) {
  return {StoredRows(standing, settings, skipChecker), PrintVolumeRules(standing, skipChecker),
          ProtectionRunRules(standing, skipChecker)};
}

void ClearHistory(const Standing& standing, IZOLTLocalSetting& settings) {
  struct Time {
    const std::string& id;
    StoredTime get;
    void (IZOLTLocalSetting::*set)(std::string_view id, std::string_view time);
  };
  const Time times[] = {
      {standing.address, &IZOLTLocalSetting::GetLastCollectFailedTime, &IZOLTLocalSetting::SetLastCollectFailedTime},
      {standing.serialNumber, &IZOLTLocalSetting::GetLastSendTime, &IZOLTLocalSetting::SetLastSendTime},
      {standing.serialNumber, &IZOLTLocalSetting::GetLastPPSendTime, &IZOLTLocalSetting::SetLastPPSendTime},
      {standing.serialNumber, &IZOLTLocalSetting::GetLastPPNormalTime, &IZOLTLocalSetting::SetLastPPNormalTime},
  };
  for (const Time& time : times) {
    if (!time.id.empty() && !TimeOf(settings, time.get, time.id).empty()) (settings.*time.set)(time.id, {});
  }
  if (!standing.queueName.empty() && settings.GetCurrentTonerLife(standing.queueName) != 0) {
    settings.SetCurrentTonerLife(standing.queueName, 0);
  }
  if (!standing.serialNumber.empty() && settings.GetTonerChangeCount(standing.serialNumber) != 0) {
    settings.SetTonerChangeCount(standing.serialNumber, 0);
  }
}

}  // namespace zt
