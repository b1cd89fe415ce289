#include "RunRules.h"

#include <utility>

#include "Joined.h"
#include "ServerPolicy.h"
#include "Words.h"

namespace zt {
namespace {

constexpr Ascii kNoAddress = "Not known: the printer's address was not found.";
constexpr Ascii kNoSerialNumber = "Not known: the printer's serial number was not read.";

// RuleWords are the sentences of a rule that the skip checker decides. "{last}" stands for the time that is stored,
// "{until}" for the one from which on it does not count.
struct RuleWords {
  SkipRule rule;
  Ascii nothing;  // nothing is stored
  Ascii skips;
  Ascii passes;  // what is stored no longer counts
};
constexpr RuleWords kIOFail = {
    SkipRule::LastIOFail, "No failure to read this printer is stored.",
    "A run now would be skipped until {until}, because this printer could not be read on {last}.",
    "This printer could not be read on {last}, which no longer counts."};
constexpr RuleWords kServerFail = {SkipRule::LastServerFail, "No failure of the server is stored.",
                                   "A run now would be skipped until {until}, because the server failed on {last}.",
                                   "The server failed on {last}, which no longer counts."};
constexpr RuleWords kSend = {SkipRule::LastSend, "No report of this printer is stored, so one is due.",
                             "A run now would be skipped: last report {last}, next due {until}.",
                             "Last report {last}, so the next is due."};
constexpr RuleWords kPPSend = {SkipRule::LastPPSend, "No protection report of this printer is stored, so one is due.",
                               "A run now would be skipped, unless the toner was changed since: last protection report "
                               "{last}, next due {until}.",
                               "Last protection report {last}, so the next is due."};

// The sentence with the times in place of their names.
std::wstring Filled(Ascii sentence, const SkipDecision& decision) {
  std::wstring filled = Joined({sentence});
  for (const auto& [name, time] : {std::pair(std::wstring_view(L"{until}"), Shown(decision.until.value_or(""))),
                                   std::pair(std::wstring_view(L"{last}"), Shown(decision.last))}) {
    const std::size_t at = filled.find(name);
    if (at != std::wstring::npos) filled.replace(at, name.size(), time);
  }
  return filled;
}

void AddRule(std::vector<RuleLine>& lines, Ascii sentence) { lines.emplace_back().sentence = Joined({sentence}); }

// A rule that ends a run unless it holds.
void AddCheck(std::vector<RuleLine>& lines, bool holds, Ascii ends, Ascii passes) {
  RuleLine& line = lines.emplace_back();
  line.stops = !holds;
  line.sentence = holds ? Joined({passes}) : Joined({"A run now would end: ", ends});
}

void AddSkipRule(std::vector<RuleLine>& lines, const RuleWords& words, const ZOLTSkipChecker& skipChecker,
                 std::string_view id) {
  const SkipDecision decision = skipChecker.Decide(words.rule, id);
  RuleLine& line = lines.emplace_back();
  line.stops = decision.skips;
  line.sentence = Filled(decision.last.empty() ? words.nothing
                         : !decision.until     ? Ascii("The stored time \"{last}\" is none, so it does not count.")
                         : decision.skips      ? words.skips
                                               : words.passes,
                         decision);
}

// What both runs look at first.
std::vector<RuleLine> FirstRules(const Standing& standing) {
  std::vector<RuleLine> lines;
  AddCheck(lines, standing.queueFound, "there is no such print queue on this computer.", "The print queue is there.");
  AddCheck(lines, !standing.disabledByAdministrator, "disabled by the administrator (Disable in the registry).",
           "Not disabled by the administrator.");
  AddCheck(lines, standing.settingsUsable, "the settings file cannot be read or written.",
           "The settings file can be read and written.");
  return lines;
}

void AddNoSkipRules(std::vector<RuleLine>& lines) {
  AddRule(lines,
          "No skip rule counts and the server is not asked: the administrator has set DontCheckSkip in the registry.");
}

std::vector<RuleLine> PrintVolumeRules(const Standing& standing, ZOLTSkipChecker& skipChecker) {
  std::vector<RuleLine> lines = FirstRules(standing);
  bool enabled = true;
  skipChecker.GetZOLTEnabled(enabled);
  AddCheck(lines, enabled, "print-volume reporting is switched off, since the server ended the service.",
           "Print-volume reporting is not switched off.");
  if (standing.virtualTest) {
    AddRule(lines, "Canned data stand in for the printer: the administrator has set VirtualTest.");
  } else {
    AddCheck(lines, standing.queueIsLocal, "the queue leads to a printer that another computer shares.",
             "The queue is one of this computer.");
  }
  if (standing.skipRulesOff) {
    AddNoSkipRules(lines);
    return lines;
  }
  if (standing.address.empty()) {
    AddRule(lines, "Whether this printer failed lately is not known: no address.");
  } else {
    AddSkipRule(lines, kIOFail, skipChecker, standing.address);
  }
  AddSkipRule(lines, kServerFail, skipChecker, {});
  if (standing.serialNumber.empty()) {
    AddRule(lines, "When the last report was sent is not known: the serial number was not read.");
  } else {
    AddSkipRule(lines, kSend, skipChecker, standing.serialNumber);
  }
  AddRule(lines, "The server is asked last, and may want no report yet (page Server).");
  return lines;
}

std::vector<RuleLine> ProtectionRunRules(const Standing& standing, ZOLTSkipChecker& skipChecker) {
  std::vector<RuleLine> lines = FirstRules(standing);
  bool enabled = true;
  skipChecker.GetPPAEnabled(enabled);
  AddCheck(lines, enabled, "product protection is switched off, since the server ended the service.",
           "Product protection is not switched off.");
  AddRule(lines, "State, toner life and country of the printer decide whom it asks (page Protection).");
  if (standing.skipRulesOff) {
    AddNoSkipRules(lines);
  } else if (standing.serialNumber.empty()) {
    AddRule(lines, "When the last protection report was sent is not known: the serial number was not read.");
  } else {
    AddSkipRule(lines, kPPSend, skipChecker, standing.serialNumber);
  }
  return lines;
}

void AddSwitch(std::vector<Row>& rows, Ascii label, const IZOLTLocalSetting& settings,
               bool (IZOLTLocalSetting::*get)(bool& enabled) const) {
  bool on = true;
  const bool stored = (settings.*get)(on);
  AddRow(rows, label, on ? Ascii("on") : Ascii("off"), stored ? Ascii("") : Ascii("Never switched."));
}

void AddTime(std::vector<Row>& rows, Ascii label, std::string_view time) {
  AddRow(rows, label, time.empty() ? Piece("never") : Piece(time));
}

using StoredTime = bool (IZOLTLocalSetting::*)(std::string_view id, std::string& time) const;

std::string TimeOf(const IZOLTLocalSetting& settings, StoredTime get, std::string_view id) {
  std::string time;
  (settings.*get)(id, time);
  return time;
}

// Without an identifier the bare key would be read, which is no printer's.
void AddPrinterTime(std::vector<Row>& rows, Ascii label, const IZOLTLocalSetting& settings, StoredTime get,
                    std::string_view id, Ascii whyUnknown) {
  if (id.empty()) {
    AddRow(rows, label, "", whyUnknown);
  } else {
    AddTime(rows, label, TimeOf(settings, get, id));
  }
}

std::vector<Row> StoredRows(const Standing& standing, const IZOLTLocalSetting& settings, ZOLTSkipChecker& skipChecker) {
  std::vector<Row> rows;
  AddSwitch(rows, "Print-volume reporting", settings, &IZOLTLocalSetting::GetZOLTEnabled);
  AddSwitch(rows, "Product protection", settings, &IZOLTLocalSetting::GetPPAEnabled);
  if (const int days = settings.GetSendIntervalDays(0); days != 0) {
    AddRow(rows, "Days between reports", days);
  } else {
    AddRow(rows, "Days between reports", "", "The default: the server gave none yet.");
  }
  ServerPolicy policy;
  const Ascii source = skipChecker.GetServerPolicy(policy) ? Ascii("As the server gave it.")
                                                           : Ascii("Default: the server gave none yet.");
  AddRow(rows, "Days between protection reports", policy.transmissionDuration, source);
  AddRow(rows, "Toner life limit", static_cast<std::uint32_t>(policy.tonerMaxLife), source);
  AddRow(rows, "Countries where nobody is asked", policy.nsLanguageCode, source);
  std::string serverFailure;
  settings.GetLastServerFailedTime(serverFailure);
  AddTime(rows, "Last failure of the server", serverFailure);
  AddPrinterTime(rows, "Last failure to read this printer", settings, &IZOLTLocalSetting::GetLastCollectFailedTime,
                 standing.address, kNoAddress);
  AddPrinterTime(rows, "Last report of this printer", settings, &IZOLTLocalSetting::GetLastSendTime,
                 standing.serialNumber, kNoSerialNumber);
  AddPrinterTime(rows, "Last protection report of this printer", settings, &IZOLTLocalSetting::GetLastPPSendTime,
                 standing.serialNumber, kNoSerialNumber);
  if (!standing.queueName.empty()) {
    AddRow(rows, "Toner life, as a run last read it",
           static_cast<std::uint32_t>(settings.GetCurrentTonerLife(standing.queueName)));
  }
  if (!standing.serialNumber.empty()) {
    AddRow(rows, "Toner change count, as a run last read it",
           static_cast<std::uint32_t>(settings.GetTonerChangeCount(standing.serialNumber)));
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
