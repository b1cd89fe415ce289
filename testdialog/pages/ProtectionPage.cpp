#include "ProtectionPage.h"

#include <optional>

#include "Joined.h"
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
};

std::uint32_t LimitOf(const ServerPolicy& policy) { return static_cast<std::uint32_t>(policy.tonerMaxLife); }

// "the toner life 160 is past the limit 150"
std::wstring LifeAndLimit(const Reading& reading, Ascii relation) {
  return Joined({"the toner life ", reading.tonerLife, " ", relation, " the limit ", LimitOf(reading.policy)});
}

std::wstring VerdictWhereOn(const Reading& reading) {
  switch (QuestionForProtectedPrinter(reading.state, reading.tonerLife, reading.policy, reading.countryIndex)) {
    case Question::Ask:
      return Joined({"A run now would ask the user to agree: protection is on, and ", LifeAndLimit(reading, "is past"),
                     ". A refusal would switch protection off, and would be reported."});
    case Question::Decline:
      return Joined({"A run now would switch protection off and ask nobody: ", LifeAndLimit(reading, "is past"),
                     ", and in the country ", reading.countryIndex, " nobody is asked."});
    case Question::None:
      break;
  }
  return Joined({"A run now would ask nobody: protection is on, and ", LifeAndLimit(reading, "is within"), "."});
}

std::wstring VerdictWhereOff(const Reading& reading, IZOLTDataProvider& provider, const ZOLTSkipChecker& skipChecker) {
  if (IsTonerFresh(reading.tonerLife)) {
    return Joined({"A run now would ask nobody: protection is off, and the toner is fresh (its life is ",
                   reading.tonerLife, ")."});
  }
  std::string serialNumber;
  if (!provider.GetSerialNumber(serialNumber)) {
    return Joined({"A run now would end: the printer does not tell its serial number."});
  }
  std::wstring verdict;
  if (const SkipDecision last = skipChecker.Decide(SkipRule::LastPPSend, serialNumber); last.skips) {
    verdict = Joined({"Unless the toner was changed since, a run now would be skipped: last protection report ",
                      last.last, ", next due ", last.until.value_or("later"), ". Otherwise: "});
  }
  const bool below = IsBelowLimit(reading.tonerLife, reading.policy);
  return Joined({verdict,
                 below ? Ascii("A run now would ask nobody: protection is off, and ")
                       : Ascii("A run now would ask the user to agree: protection is off, and "),
                 LifeAndLimit(reading, below ? Ascii("is below") : Ascii("has reached")),
                 ". The server is asked before, and may give another limit.",
                 below ? Ascii("") : Ascii(" Consent would switch protection on; a refusal would be reported.")});
}

// WhyItEnds reads what the run reads, in its order, and keeps each datum as a row. It returns why the run would end
// before it looks at the limit; nothing when it would not.
std::optional<Ascii> WhyItEnds(IZOLTDataProvider& provider, ZOLTSkipChecker& skipChecker, Reading& reading,
                               ProtectionFacts& facts) {
  std::vector<Row>& rows = facts.rows;
  if (!provider.Initialize(true))
    return Ascii("the printer does not answer, or does not offer reports (page Identity).");
  if (!provider.CheckSBXSupport(&reading.state)) return Ascii("the printer tells no protection state.");
  AddRow(rows, "Product protection", StateText(reading.state), StateRemark(reading.state));
  facts.switchable = IsProtectable(reading.state);

  std::uint32_t changeCount = 0;
  const bool hasLife = provider.GetTonerLife(&reading.tonerLife, &changeCount);
  if (hasLife) {
    AddRow(rows, "Toner life", reading.tonerLife, "The largest of the printer's counters.");
    AddRow(rows, "Toner change count", changeCount,
           "Another count than the stored one means another toner (page History).");
  } else {
    AddRow(rows, "Toner life", "", "The printer does not tell it.");
  }
  const Ascii source = skipChecker.GetServerPolicy(reading.policy) ? Ascii("As the server gave it.")
                                                                   : Ascii("Default: the server gave none yet.");
  AddRow(rows, "Toner life limit", LimitOf(reading.policy), source);
  AddRow(rows, "Countries where nobody is asked", reading.policy.nsLanguageCode, source);
  AddRow(rows, "Days between protection reports", reading.policy.transmissionDuration, source);
  const bool hasCountry = provider.GetCountryIndex(reading.countryIndex) && !reading.countryIndex.empty();
  AddRow(rows, "Country of the printer", reading.countryIndex,
         hasCountry ? Ascii("") : Ascii("The printer names none."));

  if (bool enabled = true; skipChecker.GetPPAEnabled(enabled) && !enabled) {
    return Ascii("product protection is switched off in the settings (page History).");
  }
  if (!facts.switchable) return Ascii("the protection of this printer cannot be switched.");
  if (!hasLife) return Ascii("the printer does not tell its toner life.");
  if (!hasCountry) return Ascii("the printer names no country.");
  return std::nullopt;
}

}  // namespace

ProtectionFacts ReadProtection(IZOLTDataProvider& provider, ZOLTSkipChecker& skipChecker) {
  ProtectionFacts facts;
  Reading reading;
  if (const std::optional<Ascii> why = WhyItEnds(provider, skipChecker, reading, facts)) {
    facts.verdict = Joined({"A run now would end: ", *why});
  } else if (reading.state == ProtectionState::On) {
    facts.verdict = VerdictWhereOn(reading);
  } else {
    facts.verdict = VerdictWhereOff(reading, provider, skipChecker);
  }
  return facts;
}

}  // namespace zt
