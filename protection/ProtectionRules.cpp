#include "ProtectionRules.h"

#include <algorithm>
#include <string>
#include <vector>

#include "ProtectionState.h"
#include "Text.h"

namespace zt {
namespace {

constexpr std::uint32_t kFreshTonerLife = 100;

// Limits and lives are numbers without sign; the settings file keeps them as signed ones.
std::uint32_t Limit(const ServerPolicy& policy) { return static_cast<std::uint32_t>(policy.tonerMaxLife); }

}  // namespace

bool IsProtectable(ProtectionState state) { return state == ProtectionState::On || state == ProtectionState::Off; }

Question QuestionForProtectedPrinter(ProtectionState state, std::uint32_t tonerLife, const ServerPolicy& policy,
                                     std::string_view countryIndex) {
  if (state != ProtectionState::On || Limit(policy) >= tonerLife) return Question::None;
  const bool unknown = countryIndex.find("Unknown") != std::string_view::npos;
  return unknown || IsCountryListed(policy.nsLanguageCode, countryIndex) ? Question::Decline : Question::Ask;
}

bool IsCountryListed(std::string_view list, std::string_view countryIndex) {
  const std::vector<std::string_view> items = SplitAny(list, ",");
  return std::any_of(items.begin(), items.end(), [&](std::string_view item) { return Trim(item) == countryIndex; });
}

bool IsServerAskedFirst(bool policyStored, ProtectionState state) {
  return !policyStored || state == ProtectionState::On;
}

ServerPolicy MergePolicy(const ServerPolicy& policy, const ServerAnswer& answer) {
  ServerPolicy merged = policy;
  merged.transmissionDuration = answer.GetTransmissionDuration().value_or(policy.transmissionDuration);
  merged.nsLanguageCode = answer.GetNSLanguageCode().value_or(policy.nsLanguageCode);
  merged.tonerMaxLife = answer.GetTonerMaxLife().value_or(ServerPolicy().tonerMaxLife);
  return merged;
}

bool IsTonerFresh(std::uint32_t tonerLife) { return tonerLife < kFreshTonerLife; }

bool IsRefused(Agreement agreement) { return agreement != Agreement::Agreed; }

bool IsReportDue(ProtectionState state, Agreement agreement) {
  return state == ProtectionState::Off || IsRefused(agreement);
}

bool IsBelowLimit(std::uint32_t tonerLife, const ServerPolicy& policy) {
  return Limit(policy) > 0 && tonerLife < Limit(policy);
}

}  // namespace zt
