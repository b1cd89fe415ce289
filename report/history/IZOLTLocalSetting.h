#pragma once

#include <string>
#include <string_view>

namespace zt {

// IZOLTLocalSetting is the typed view of the settings file. `id` is the printer identifier that keys the per-printer
// history; it is trimmed of CR, LF and blanks, each "=", ";", CR or LF left in it counts as "_", and an empty one
// addresses the bare key. Times are texts "YYYY-MM-DD hh:mm:ss" in local time and are not checked here. Getters with an
// output return whether the value was found and leave the output alone if not; the others return the given fallback, or
// 0. The order of the operations is part of the interface: four of the time pairs put the setter first. The pair
// of LastCollectTime has no caller in this program.
class IZOLTLocalSetting {
 public:
  virtual ~IZOLTLocalSetting() = default;

  virtual bool GetZOLTEnabled(bool& enabled) const = 0;
  virtual void SetZOLTEnabled(bool enabled) = 0;
  virtual bool GetPPAEnabled(bool& enabled) const = 0;
  virtual void SetPPAEnabled(bool enabled) = 0;
  virtual int GetSendIntervalDays(int fallback) const = 0;
  virtual void SetSendIntervalDays(int days) = 0;
  virtual int GetPPNormalSendInterval(int fallback) const = 0;
  virtual void SetPPNormalSendInterval(int days) = 0;
  virtual bool GetLastCollectFailedTime(std::string_view id, std::string& time) const = 0;
  virtual void SetLastCollectFailedTime(std::string_view id, std::string_view time) = 0;
  virtual bool GetLastCollectTime(std::string_view id, std::string& time) const = 0;
  virtual void SetLastCollectTime(std::string_view id, std::string_view time) = 0;
  virtual void SetLastSendTime(std::string_view id, std::string_view time) = 0;
  virtual bool GetLastSendTime(std::string_view id, std::string& time) const = 0;
  virtual void SetLastServerFailedTime(std::string_view time) = 0;
  virtual bool GetLastServerFailedTime(std::string& time) const = 0;
  virtual void SetLastPPSendTime(std::string_view id, std::string_view time) = 0;
  virtual bool GetLastPPSendTime(std::string_view id, std::string& time) const = 0;
  virtual void SetLastPPNormalTime(std::string_view id, std::string_view time) = 0;
  virtual bool GetLastPPNormalTime(std::string_view id, std::string& time) const = 0;
  virtual int GetSBXPolicyReceived() const = 0;
  virtual void SetSBXPolicyReceived(bool received) = 0;
  virtual int GetTransmissionDuration(int fallback) const = 0;
  virtual void SetTransmissionDuration(int days) = 0;
  virtual bool GetNSLanguageCode(std::string& codes) const = 0;  // always true; "24, 59" when absent
  virtual void SetNSLanguageCode(std::string_view codes) = 0;
  virtual int GetTonerMaxLife(int fallback) const = 0;
  virtual void SetTonerMaxLife(int life) = 0;
  virtual int GetCurrentTonerLife(std::string_view id) const = 0;
  virtual void SetCurrentTonerLife(std::string_view id, int life) = 0;
  virtual int GetTonerChangeCount(std::string_view id) const = 0;
  virtual void SetTonerChangeCount(std::string_view id, int count) = 0;
};

}  // namespace zt
