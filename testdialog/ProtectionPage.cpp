#include "ProtectionPage.h"

#include "ProtectionRules.h"
#include "Words.h"

namespace zt {
namespace {

// Reading is what the run of product protection looks at before it asks anybody.
struct Reading {
  ProtectionState state{};
  std::uint32_t tonerLife = 0;
  std::string countryIndex;
  ServerPolicy policy;
  bool policyStored = false;
};

std::wstring LimitOf(const ServerPolicy& policy) {
  return std::to_wstring(static_cast<std::uint32_t>(policy.tonerMaxLife));
}

// "the toner life 160 is past the limit 150"
std::wstring LifeAndLimit(const Reading& reading, std::wstring_view relation) {
  return L"the toner life " + std::to_wstring(reading.tonerLife) + L" " + std::wstring(relation) + L" the limit " +
         LimitOf(reading.policy);
}

std::wstring VerdictWhereOn(const Reading& reading) {
  switch (QuestionForProtectedPrinter(reading.state, reading.tonerLife, reading.policy, reading.countryIndex)) {
    case Question::Ask:
      return L"A run now would ask the user to agree: protection is on, and " + LifeAndLimit(reading, L"is past") +
             L". A refusal would switch protection off, and would be reported.";
    case Question::Decline:
      return L"A run now would switch protection off and ask nobody: " + LifeAndLimit(reading, L"is past") +
             L", and in the country " + Shown(reading.countryIndex) + L" nobody is asked.";
    case Question::None:
      break;
  }
  return L"A run now would ask nobody: protection is on, and " + LifeAndLimit(reading, L"is within") + L".";
}

std::wstring VerdictWhereOff(const Reading& reading, IZOLTDataProvider& provider, const ZOLTSkipChecker& skipChecker) {
  if (IsTonerFresh(reading.tonerLife)) {
    return L"A run now would ask nobody: protection is off, and the toner is fresh (its life is " +
           std::to_wstring(reading.tonerLife) + L").";
  }
  std::string serialNumber;
  if (!provider.GetSerialNumber(serialNumber)) {
    return L"A run now would end: the printer does not tell its serial number.";
  }
  const SkipDecision last = skipChecker.Decide(SkipRule::LastPPSend, serialNumber);
  const std::wstring skipped =
      last.skips ? L"Unless the toner was changed since, a run now would be skipped: last protection report " +
                       Shown(last.last) + L", next due " + Shown(last.until.value_or("later")) + L". Otherwise: "
                 : L"";
  const std::wstring server = L" The server is asked before, and may give another limit.";
  if (IsBelowLimit(reading.tonerLife, reading.policy)) {
    return skipped + L"A run now would ask nobody: protection is off, and " + LifeAndLimit(reading, L"is below") +
           L"." + server;
  }
  return skipped + L"A run now would ask the user to agree: protection is off, and " +
         LifeAndLimit(reading, L"has reached") + L"." + server +
         L" Consent would switch protection on; a refusal would be reported.";
}

// Read reads what the run reads, in its order, and keeps each datum as a row. Where the run ends it returns the
// verdict.
std::wstring Read(IZOLTDataProvider& provider, ZOLTSkipChecker& skipChecker, ProtectionFacts& facts) {
  if (!provider.Initialize(true)) {
    return L"A run now would end: the printer does not answer, or does not offer reports (page Identity).";
  }
  Reading reading;
  if (!provider.CheckSBXSupport(&reading.state)) return L"A run now would end: the printer tells no protection state.";
  facts.rows.push_back({L"Product protection", StateText(reading.state), StateRemark(reading.state)});
  facts.switchable = IsProtectable(reading.state);

  std::uint32_t changeCount = 0;
  const bool hasLife = provider.GetTonerLife(&reading.tonerLife, &changeCount);
  if (hasLife) {
    facts.rows.push_back(
        {L"Toner life", std::to_wstring(reading.tonerLife), L"The largest of the printer's counters."});
    facts.rows.push_back({L"Toner change count", std::to_wstring(changeCount),
                          L"Another count than the stored one means another toner (page History)."});
  } else {
    facts.rows.push_back({L"Toner life", L"", L"The printer does not tell it."});
  }
  reading.policyStored = skipChecker.GetServerPolicy(reading.policy);
  const std::wstring source = reading.policyStored ? L"As the server gave it." : L"Default: the server gave none yet.";
  facts.rows.push_back({L"Toner life limit", LimitOf(reading.policy), source});
  facts.rows.push_back({L"Countries where nobody is asked", Shown(reading.policy.nsLanguageCode), source});
  facts.rows.push_back(
      {L"Days between protection reports", std::to_wstring(reading.policy.transmissionDuration), source});
  const bool hasCountry = provider.GetCountryIndex(reading.countryIndex) && !reading.countryIndex.empty();
  facts.rows.push_back(
      {L"Country of the printer", Shown(reading.countryIndex), hasCountry ? L"" : L"The printer names none."});

  if (bool enabled = true; skipChecker.GetPPAEnabled(enabled) && !enabled) {
    return L"A run now would end: product protection is switched off in the settings (page History).";
  }
  if (!facts.switchable) return L"A run now would end: the protection of this printer cannot be switched.";
  if (!hasLife) return L"A run now would end: the printer does not tell its toner life.";
  if (!hasCountry) return L"A run now would end: the printer names no country.";
  return reading.state == ProtectionState::On ? VerdictWhereOn(reading)
                                              : VerdictWhereOff(reading, provider, skipChecker);
}

}  // namespace

ProtectionFacts ReadProtection(IZOLTDataProvider& provider, ZOLTSkipChecker& skipChecker) {
  ProtectionFacts facts;
  facts.verdict = Read(provider, skipChecker, facts);
  return facts;
}

}  // namespace zt
