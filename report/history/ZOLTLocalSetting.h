#pragma once

#include <string>
#include <string_view>

#include "IZOLTLocalSetting.h"
#include "KVFLocalSetting.h"

namespace zt {

// ZOLTLocalSetting is the agent's settings file: services, intervals and policy under "Common", what happened when
// under "History".
class ZOLTLocalSetting : public KVFLocalSetting, public IZOLTLocalSetting {
 public:
  using KVFLocalSetting::KVFLocalSetting;

  bool GetZOLTEnabled(bool& enabled) const override;
  void SetZOLTEnabled(bool enabled) override;
  bool GetPPAEnabled(bool& enabled) const override;
  void SetPPAEnabled(bool enabled) override;
  int GetSendIntervalDays(int fallback) const override;
  void SetSendIntervalDays(int days) override;
  int GetPPNormalSendInterval(int fallback) const override;
  void SetPPNormalSendInterval(int days) override;
  bool GetLastCollectFailedTime(std::string_view id, std::string& time) const override;
  void SetLastCollectFailedTime(std::string_view id, std::string_view time) override;
  bool GetLastCollectTime(std::string_view id, std::string& time) const override;
  void SetLastCollectTime(std::string_view id, std::string_view time) override;
  void SetLastSendTime(std::string_view id, std::string_view time) override;
  bool GetLastSendTime(std::string_view id, std::string& time) const override;
  void SetLastServerFailedTime(std::string_view time) override;
  bool GetLastServerFailedTime(std::string& time) const override;
  void SetLastPPSendTime(std::string_view id, std::string_view time) override;
  bool GetLastPPSendTime(std::string_view id, std::string& time) const override;
  void SetLastPPNormalTime(std::string_view id, std::string_view time) override;
  bool GetLastPPNormalTime(std::string_view id, std::string& time) const override;
  int GetSBXPolicyReceived() const override;
  void SetSBXPolicyReceived(bool received) override;
  int GetTransmissionDuration(int fallback) const override;
  void SetTransmissionDuration(int days) override;
  bool GetNSLanguageCode(std::string& codes) const override;
  void SetNSLanguageCode(std::string_view codes) override;
  int GetTonerMaxLife(int fallback) const override;
  void SetTonerMaxLife(int life) override;
  int GetCurrentTonerLife(std::string_view id) const override;
  void SetCurrentTonerLife(std::string_view id, int life) override;
  int GetTonerChangeCount(std::string_view id) const override;
  void SetTonerChangeCount(std::string_view id, int count) override;

 private:
  bool GetSwitch(std::string_view key, bool& on) const;
  void SetSwitch(std::string_view key, bool on);
  int GetNumber(std::string_view section, std::string_view key, int fallback) const;
  void SetNumber(std::string_view section, std::string_view key, int number);

  // GetTime and SetTime reach one time of the history: of a printer or, with an empty `id`, of the server.
  bool GetTime(std::string_view key, std::string_view id, std::string& time) const;
  void SetTime(std::string_view key, std::string_view id, std::string_view time);
};

}  // namespace zt
