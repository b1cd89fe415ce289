// A settings file of any content, and what runs store in it: what the store held is what the next start reads, with the
// end of the longer old file behind it.

#include <vector>

#include "Input.h"
#include "MemorySettings.h"
#include "Require.h"
#include "Text.h"
#include "TimeText.h"
#include "ZOLTLocalSetting.h"
#include "ZOLTSkipChecker.h"

namespace {

using Settings = zt::IZOLTLocalSetting;

struct Time {
  bool (Settings::*get)(std::string_view, std::string&) const;
  void (Settings::*set)(std::string_view, std::string_view);
};
constexpr Time kTimes[] = {{&Settings::GetLastCollectFailedTime, &Settings::SetLastCollectFailedTime},
                           {&Settings::GetLastCollectTime, &Settings::SetLastCollectTime},
                           {&Settings::GetLastSendTime, &Settings::SetLastSendTime},
                           {&Settings::GetLastPPSendTime, &Settings::SetLastPPSendTime},
                           {&Settings::GetLastPPNormalTime, &Settings::SetLastPPNormalTime}};

void store(Settings& settings, Input& input, const std::string& id) {
  const std::uint8_t what = input.byte() % 16;
  if (what < std::size(kTimes)) return (settings.*kTimes[what].set)(id, input.text());
  switch (what) {
    case 5:
      return settings.SetLastServerFailedTime(input.text());
    case 6:
      return settings.SetNSLanguageCode(input.text());
    case 7:
      return settings.SetCurrentTonerLife(id, static_cast<int>(input.number()));
    case 8:
      return settings.SetTonerChangeCount(id, static_cast<int>(input.number()));
    case 9:
      return settings.SetSendIntervalDays(static_cast<int>(input.number()));
    case 10:
      return settings.SetTransmissionDuration(static_cast<int>(input.number()));
    case 11:
      return settings.SetTonerMaxLife(static_cast<int>(input.number()));
    case 12:
      return settings.SetPPNormalSendInterval(static_cast<int>(input.number()));
    case 13:
      return settings.SetSBXPolicyReceived(input.byte() % 2 != 0);
    case 14:
      return settings.SetZOLTEnabled(input.byte() % 2 != 0);
    default:
      return settings.SetPPAEnabled(input.byte() % 2 != 0);
  }
}

/// A text as it comes back from the file: a ";" begins a comment, and a line has one line.
std::string asStored(const std::string& text) {
  const std::string line = zt::OnOneLine(text);
  return std::string(zt::Trim(line.substr(0, line.find(';'))));
}

/// All that the store holds for these printers, as it comes back from the file. What may not be there has no entry: the
/// end of an old file may hold what this program never wrote, a comment cut in two for one.
std::vector<std::string> contentOf(const Settings& settings, const std::vector<std::string>& ids) {
  std::vector<std::string> content;
  const auto add = [&](bool found, const std::string& text) { content.push_back(found ? "=" + asStored(text) : ""); };
  const auto addNumber = [&](int number) { add(number != 0, std::to_string(number)); };
  std::string text;
  bool on = false;
  for (const std::string& id : ids) {
    for (const Time& time : kTimes) add((settings.*time.get)(id, text), text);
    addNumber(settings.GetCurrentTonerLife(id));
    addNumber(settings.GetTonerChangeCount(id));
  }
  add(settings.GetLastServerFailedTime(text), text);
  add(settings.GetNSLanguageCode(text) && text != "24, 59", text);
  add(settings.GetZOLTEnabled(on), std::to_string(on));
  add(settings.GetPPAEnabled(on), std::to_string(on));
  addNumber(settings.GetSendIntervalDays(0));
  addNumber(settings.GetTransmissionDuration(0));
  addNumber(settings.GetTonerMaxLife(0));
  addNumber(settings.GetPPNormalSendInterval(0));
  addNumber(settings.GetSBXPolicyReceived());
  return content;
}

void checkRules(zt::ZOLTLocalSetting& settings, const std::string& id) {
  zt::ZOLTSkipChecker checker(&settings, [] { return std::time_t{1'800'000'000}; });
  for (const auto rule : {zt::SkipRule::LastIOFail, zt::SkipRule::LastServerFail, zt::SkipRule::LastSend,
                          zt::SkipRule::LastPPSend, zt::SkipRule::LastPPNormal}) {
    const zt::SkipDecision decision = checker.Decide(rule, id, {});
    require(!decision.skips || decision.until, "only a time leads to a skip");
  }
  const zt::Now now = [] { return std::time_t{1'800'000'000}; };
  std::string time;
  settings.GetLastSendTime(id, time);
  require(zt::IsTimeText(time) || !zt::ParseTimeText(time), "what is no time text gives no time");
  require(!zt::IsWithinDaysOf(time, time, 0, now), "no time is less than no days ago");
  require(!zt::NowText(time, now).empty(), "there is always a time");
  zt::ServerPolicy policy;
  checker.GetServerPolicy(policy);
  require(policy.nsLanguageCode.size() <= 519, "a list of countries has 519 bytes at most");
  checker.StoreServerPolicy(policy);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const std::vector<std::string> ids = {input.text(input.byte() % 16), input.text(input.byte() % 16)};
  std::vector<std::string> before;
  {
    Input stored = input;
    zt::settingsFile = input.rest();
    zt::ZOLTLocalSetting settings("ZT");
    require(settings.Load(), "any file can be read");
    for (int i = stored.byte() % 8; i >= 0; --i) store(settings, stored, ids[static_cast<std::size_t>(i) % 2]);
    checkRules(settings, ids[0]);
    before = contentOf(settings, ids);
  }
  zt::ZOLTLocalSetting settings("ZT");
  require(settings.Load(), "what was saved can be read");
  const std::vector<std::string> after = contentOf(settings, ids);
  for (std::size_t i = 0; i < before.size(); ++i) {
    require(before[i].empty() || after[i] == before[i], "what the store held is what is read");
  }
  return 0;
}
