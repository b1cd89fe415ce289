#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "IZOLTLocalSetting.h"
#include "IZOLTSkipChecker.h"
#include "SkipDecision.h"

namespace zt {

// ZOLTSkipChecker applies the skip rules to the local settings. Without settings every check returns false and every
// record does nothing. A check that returns true traces why.
class ZOLTSkipChecker : public IZOLTSkipChecker {
 public:
  // The settings, which may be null, must outlive the checker.
  ZOLTSkipChecker(IZOLTLocalSetting* settings, Now now) : settings_(settings), now_(std::move(now)) {}

  // SetReferenceTime makes the time text stand for the current time in every check and record. No caller in this
  // program; part of the interface, to try the rules on another day.
  void SetReferenceTime(std::string_view time) { referenceTime_ = time; }

  // SetDontCheckSkip makes every Is…Near return false. Records are still written, so that a test run leaves a normal
  // history.
  void SetDontCheckSkip(bool on) { dontCheckSkip_ = on; }

  // Decide returns what a rule says, and why: each Is…Near is the decision of its rule, with a trace line when it
  // skips. `time` takes the place of the stored one.
  SkipDecision Decide(SkipRule rule, std::string_view id, OptionalTimeText time = std::nullopt) const;

  bool IsLastIOFailNear(std::string_view id) override;
  bool IsLastSendNear(std::string_view id, OptionalTimeText time) override;
  bool IsLastServerFailNear() override;
  void RecordIOFail(std::string_view id) override;
  void RecordServerFail() override;
  void RecordSendSuccess(std::string_view id, OptionalTimeText time) override;
  void SetSendInterval(int days) override;
  void SetPPNormalInterval(int days) override;
  void SetZOLTEnabled(bool enabled) override;
  bool GetZOLTEnabled(bool& enabled) override;
  void SetPPAEnabled(bool enabled) override;
  bool GetPPAEnabled(bool& enabled) override;
  bool IsLastPPSendNear(std::string_view id, OptionalTimeText time) override;
  void RecordPPSend(std::string_view id, OptionalTimeText time) override;
  bool IsLastPPNormalNear(std::string_view id, OptionalTimeText time) override;
  void RecordPPNormal(std::string_view id, OptionalTimeText time) override;
  bool GetServerPolicy(ServerPolicy& policy) override;
  void StoreServerPolicy(const ServerPolicy& policy) override;
  void RecordTonerLife(std::string_view id, std::uint32_t life) override;
  bool UpdateTonerChangeCount(std::string_view id, std::uint32_t count) override;
  int GetSendInterval(int fallback) override;
  int GetPPNormalInterval(int fallback) override;
  bool IsTonerLifeExceeded(std::string_view id) override;

 private:
  using StoreTime = void (IZOLTLocalSetting::*)(std::string_view id, std::string_view time);

  bool IsNear(SkipRule rule, std::string_view id, OptionalTimeText time = std::nullopt) const;
  std::string StoredTime(SkipRule rule, std::string_view id) const;
  int DaysOf(SkipRule rule) const;
  std::string CurrentTime() const { return NowText(referenceTime_, now_); }
  void Record(std::string_view id, OptionalTimeText time, StoreTime store);

  std::optional<std::string> referenceTime_;
  IZOLTLocalSetting* settings_;
  bool dontCheckSkip_ = false;
  Now now_;
};

}  // namespace zt
