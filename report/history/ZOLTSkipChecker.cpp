#include "ZOLTSkipChecker.h"

#include "Trace.h"

namespace zt {
namespace {

constexpr int kFailureDays = 7;
constexpr int kDefaultSendDays = 30;
constexpr int kDefaultPPNormalDays = 7;
constexpr std::size_t kMaximumLanguageCodeBytes = 519;
const ServerPolicy kDefaultPolicy;

std::string StoredLanguageCode(std::string_view codes) {
  return std::string(codes.substr(0, kMaximumLanguageCodeBytes));
}

// What a check traces when it returns true.
std::string_view TraceOf(SkipRule rule) {
  switch (rule) {
    case SkipRule::LastIOFail:
      return "Last IO fail is near! Bye~";
    case SkipRule::LastServerFail:
      return "Last svr fail near! bye~";
    default:
      return "Last svr success near! bye~";
  }
}

}  // namespace

std::string ZOLTSkipChecker::StoredTime(SkipRule rule, std::string_view id) const {
  std::string time;
  switch (rule) {
    case SkipRule::LastIOFail:
      settings_->GetLastCollectFailedTime(id, time);
      break;
    case SkipRule::LastServerFail:
      settings_->GetLastServerFailedTime(time);
      break;
    case SkipRule::LastSend:
      settings_->GetLastSendTime(id, time);
      break;
    case SkipRule::LastPPSend:
      settings_->GetLastPPSendTime(id, time);
      break;
    case SkipRule::LastPPNormal:
      settings_->GetLastPPNormalTime(id, time);
      break;
  }
  return time;
}

int ZOLTSkipChecker::DaysOf(SkipRule rule) const {
  switch (rule) {
    case SkipRule::LastSend:
      return settings_->GetSendIntervalDays(kDefaultSendDays);
    case SkipRule::LastPPSend:
      return settings_->GetTransmissionDuration(kDefaultPolicy.transmissionDuration);
    case SkipRule::LastPPNormal:
      return settings_->GetPPNormalSendInterval(kDefaultPPNormalDays);
    default:
      return kFailureDays;
  }
}

SkipDecision ZOLTSkipChecker::Decide(SkipRule rule, std::string_view id, OptionalTimeText time) const {
  SkipDecision decision;
  if (!settings_ || dontCheckSkip_) return decision;
  decision.last = time ? std::string(*time) : StoredTime(rule, id);
  decision.days = DaysOf(rule);
  if (decision.last.empty()) return decision;
  decision.skips = referenceTime_ ? IsWithinDaysOf(*referenceTime_, decision.last, decision.days, now_)
                                  : IsWithinDays(decision.last, decision.days, now_);
  decision.until = TimeTextAfterDays(decision.last, decision.days);
  return decision;
}

bool ZOLTSkipChecker::IsNear(SkipRule rule, std::string_view id, OptionalTimeText time) const {
  const bool isNear = Decide(rule, id, time).skips;
  if (isNear) ZT_TRACE(Warning, TraceOf(rule));
  return isNear;
}

void ZOLTSkipChecker::Record(std::string_view id, OptionalTimeText time, StoreTime store) {
  const std::string text = time ? std::string(*time) : CurrentTime();
  if (settings_ && !text.empty()) (settings_->*store)(id, text);
}

bool ZOLTSkipChecker::IsLastIOFailNear(std::string_view id) { return IsNear(SkipRule::LastIOFail, id); }

bool ZOLTSkipChecker::IsLastSendNear(std::string_view id, OptionalTimeText time) {
  return IsNear(SkipRule::LastSend, id, time);
}

bool ZOLTSkipChecker::IsLastServerFailNear() { return IsNear(SkipRule::LastServerFail, {}); }

void ZOLTSkipChecker::RecordIOFail(std::string_view id) {
  Record(id, {}, &IZOLTLocalSetting::SetLastCollectFailedTime);
}

void ZOLTSkipChecker::RecordServerFail() {
  if (settings_) settings_->SetLastServerFailedTime(CurrentTime());
}

void ZOLTSkipChecker::RecordSendSuccess(std::string_view id, OptionalTimeText time) {
  Record(id, time, &IZOLTLocalSetting::SetLastSendTime);
}

void ZOLTSkipChecker::SetSendInterval(int days) {
  if (settings_ && days != GetSendInterval(kDefaultSendDays)) settings_->SetSendIntervalDays(days);
}

void ZOLTSkipChecker::SetPPNormalInterval(int days) {
  if (settings_ && days != GetPPNormalInterval(kDefaultPPNormalDays)) settings_->SetPPNormalSendInterval(days);
}

void ZOLTSkipChecker::SetZOLTEnabled(bool enabled) {
  if (settings_) settings_->SetZOLTEnabled(enabled);
}

bool ZOLTSkipChecker::GetZOLTEnabled(bool& enabled) { return settings_ && settings_->GetZOLTEnabled(enabled); }

void ZOLTSkipChecker::SetPPAEnabled(bool enabled) {
  if (settings_) settings_->SetPPAEnabled(enabled);
}

bool ZOLTSkipChecker::GetPPAEnabled(bool& enabled) { return settings_ && settings_->GetPPAEnabled(enabled); }

bool ZOLTSkipChecker::IsLastPPSendNear(std::string_view id, OptionalTimeText time) {
  return IsNear(SkipRule::LastPPSend, id, time);
}

void ZOLTSkipChecker::RecordPPSend(std::string_view id, OptionalTimeText time) {
  Record(id, time, &IZOLTLocalSetting::SetLastPPSendTime);
}

bool ZOLTSkipChecker::IsLastPPNormalNear(std::string_view id, OptionalTimeText time) {
  return IsNear(SkipRule::LastPPNormal, id, time);
}

void ZOLTSkipChecker::RecordPPNormal(std::string_view id, OptionalTimeText time) {
  Record(id, time, &IZOLTLocalSetting::SetLastPPNormalTime);
}

bool ZOLTSkipChecker::GetServerPolicy(ServerPolicy& policy) {
  if (!settings_) return false;
  policy = kDefaultPolicy;
  if (settings_->GetSBXPolicyReceived() == 0) return false;
  policy.transmissionDuration = settings_->GetTransmissionDuration(kDefaultPolicy.transmissionDuration);
  settings_->GetNSLanguageCode(policy.nsLanguageCode);
  policy.nsLanguageCode = StoredLanguageCode(policy.nsLanguageCode);
  policy.tonerMaxLife = settings_->GetTonerMaxLife(kDefaultPolicy.tonerMaxLife);
  return true;
}

void ZOLTSkipChecker::StoreServerPolicy(const ServerPolicy& policy) {
  if (!settings_) return;
  settings_->SetSBXPolicyReceived(true);
  ServerPolicy current;
  GetServerPolicy(current);
  // A value that is 0 or empty in the file was put there by hand and stays, on purpose.
  if (current.transmissionDuration != 0 && current.transmissionDuration != policy.transmissionDuration) {
    settings_->SetTransmissionDuration(policy.transmissionDuration);
  }
  const std::string languageCode = StoredLanguageCode(policy.nsLanguageCode);
  if (!current.nsLanguageCode.empty() && current.nsLanguageCode != languageCode) {
    settings_->SetNSLanguageCode(languageCode);
  }
  if (current.tonerMaxLife != 0 && current.tonerMaxLife != policy.tonerMaxLife) {
    settings_->SetTonerMaxLife(policy.tonerMaxLife);
  }
}

void ZOLTSkipChecker::RecordTonerLife(std::string_view id, std::uint32_t life) {
  if (settings_ && !id.empty()) settings_->SetCurrentTonerLife(id, static_cast<int>(life));
}

bool ZOLTSkipChecker::UpdateTonerChangeCount(std::string_view id, std::uint32_t count) {
  if (!settings_ || static_cast<std::uint32_t>(settings_->GetTonerChangeCount(id)) == count) return false;
  settings_->SetTonerChangeCount(id, static_cast<int>(count));
  return true;
}

int ZOLTSkipChecker::GetSendInterval(int fallback) {
  return settings_ ? settings_->GetSendIntervalDays(fallback) : fallback;
}

int ZOLTSkipChecker::GetPPNormalInterval(int fallback) {
  return settings_ ? settings_->GetPPNormalSendInterval(fallback) : fallback;
}

bool ZOLTSkipChecker::IsTonerLifeExceeded(std::string_view id) {
  if (!settings_) return false;
  const auto life = static_cast<std::uint32_t>(settings_->GetCurrentTonerLife(id));
  return life > static_cast<std::uint32_t>(settings_->GetTonerMaxLife(kDefaultPolicy.tonerMaxLife));
}

}  // namespace zt
