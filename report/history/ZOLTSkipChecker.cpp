#include "ZOLTSkipChecker.h"

#include "Trace.h"

namespace zt {
namespace {

constexpr int kFailureDays = 7;
constexpr int kDefaultSendDays = 30;
constexpr int kDefaultPPNormalDays = 7;
constexpr std::size_t kMaximumLanguageCodeBytes = 519;
constexpr std::string_view kSendIsNear = "Last svr success near! bye~";
const ServerPolicy kDefaultPolicy;

std::string StoredLanguageCode(std::string_view codes) {
  return std::string(codes.substr(0, kMaximumLanguageCodeBytes));
}

}  // namespace

// The given time, or else the stored one; empty when there is none.
std::string ZOLTSkipChecker::TimeOf(std::string_view id, OptionalTimeText given, StoredTime stored) const {
  if (given) return std::string(*given);
  std::string time;
  (settings_->*stored)(id, time);
  return time;
}

bool ZOLTSkipChecker::IsNear(std::string_view time, int days, std::string_view message) const {
  if (time.empty()) return false;
  const bool isNear =
      referenceTime_ ? IsWithinDaysOf(*referenceTime_, time, days, now_) : IsWithinDays(time, days, now_);
  if (isNear) ZT_TRACE(Warning, message);
  return isNear;
}

void ZOLTSkipChecker::Record(std::string_view id, OptionalTimeText time, StoreTime store) {
  const std::string text = time ? std::string(*time) : CurrentTime();
  if (settings_ && !text.empty()) (settings_->*store)(id, text);
}

bool ZOLTSkipChecker::IsLastIOFailNear(std::string_view id) {
  if (!ChecksApply()) return false;
  const std::string time = TimeOf(id, {}, &IZOLTLocalSetting::GetLastCollectFailedTime);
  return IsNear(time, kFailureDays, "Last IO fail is near! Bye~");
}

bool ZOLTSkipChecker::IsLastSendNear(std::string_view id, OptionalTimeText time) {
  if (!ChecksApply()) return false;
  const std::string last = TimeOf(id, time, &IZOLTLocalSetting::GetLastSendTime);
  return IsNear(last, GetSendInterval(kDefaultSendDays), kSendIsNear);
}

bool ZOLTSkipChecker::IsLastServerFailNear() {
  if (!ChecksApply()) return false;
  std::string time;
  settings_->GetLastServerFailedTime(time);
  return IsNear(time, kFailureDays, "Last svr fail near! bye~");
}

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
  if (!ChecksApply()) return false;
  const std::string last = TimeOf(id, time, &IZOLTLocalSetting::GetLastPPSendTime);
  return IsNear(last, settings_->GetTransmissionDuration(kDefaultPolicy.transmissionDuration), kSendIsNear);
}

void ZOLTSkipChecker::RecordPPSend(std::string_view id, OptionalTimeText time) {
  Record(id, time, &IZOLTLocalSetting::SetLastPPSendTime);
}

bool ZOLTSkipChecker::IsLastPPNormalNear(std::string_view id, OptionalTimeText time) {
  if (!ChecksApply()) return false;
  const std::string last = TimeOf(id, time, &IZOLTLocalSetting::GetLastPPNormalTime);
  return IsNear(last, GetPPNormalInterval(kDefaultPPNormalDays), kSendIsNear);
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
