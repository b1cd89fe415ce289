#pragma once

#include <map>
#include <string>
#include <string_view>

#include "IZOLTLocalSetting.h"

namespace zt {

// FakeLocalSetting keeps its values as texts under the keys of the settings file, where a test sets and reads them.
class FakeLocalSetting : public IZOLTLocalSetting {
 public:
  std::map<std::string, std::string> values;

  bool GetZOLTEnabled(bool& enabled) const override { return GetSwitch("ZOLTEnabled", enabled); }
  void SetZOLTEnabled(bool enabled) override { values["ZOLTEnabled"] = enabled ? "1" : "2"; }
  bool GetPPAEnabled(bool& enabled) const override { return GetSwitch("PPAEnabled", enabled); }
  void SetPPAEnabled(bool enabled) override { values["PPAEnabled"] = enabled ? "1" : "2"; }
  int GetSendIntervalDays(int fallback) const override { return GetNumber("SendIntervalDays", fallback); }
  void SetSendIntervalDays(int days) override { SetNumber("SendIntervalDays", days); }
  int GetPPNormalSendInterval(int fallback) const override { return GetNumber("PPNormalSendInterval", fallback); }
  void SetPPNormalSendInterval(int days) override { SetNumber("PPNormalSendInterval", days); }
  bool GetLastCollectFailedTime(std::string_view id, std::string& time) const override {
    return GetText(Key("LastCollectFailedTime", id), time);
  }
  void SetLastCollectFailedTime(std::string_view id, std::string_view time) override {
    values[Key("LastCollectFailedTime", id)] = time;
  }
  bool GetLastCollectTime(std::string_view id, std::string& time) const override {
    return GetText(Key("LastCollectTime", id), time);
  }
  void SetLastCollectTime(std::string_view id, std::string_view time) override {
    values[Key("LastCollectTime", id)] = time;
  }
  void SetLastSendTime(std::string_view id, std::string_view time) override { values[Key("LastSendTime", id)] = time; }
  bool GetLastSendTime(std::string_view id, std::string& time) const override {
    return GetText(Key("LastSendTime", id), time);
  }
  void SetLastServerFailedTime(std::string_view time) override { values["LastServerFailedTime"] = time; }
  bool GetLastServerFailedTime(std::string& time) const override { return GetText("LastServerFailedTime", time); }
  void SetLastPPSendTime(std::string_view id, std::string_view time) override {
    values[Key("LastPPSendTime", id)] = time;
  }
  bool GetLastPPSendTime(std::string_view id, std::string& time) const override {
    return GetText(Key("LastPPSendTime", id), time);
  }
  void SetLastPPNormalTime(std::string_view id, std::string_view time) override {
    values[Key("LastPPNormalTime", id)] = time;
  }
  bool GetLastPPNormalTime(std::string_view id, std::string& time) const override {
    return GetText(Key("LastPPNormalTime", id), time);
  }
  int GetSBXPolicyReceived() const override { return GetNumber("SBXPolicyReceived", 0); }
  void SetSBXPolicyReceived(bool received) override { SetNumber("SBXPolicyReceived", received ? 1 : 0); }
  int GetTransmissionDuration(int fallback) const override { return GetNumber("TransmissionDuration", fallback); }
  void SetTransmissionDuration(int days) override { SetNumber("TransmissionDuration", days); }
  bool GetNSLanguageCode(std::string& codes) const override {
    if (!GetText("NSLanguageCode", codes)) codes = "24, 59";
    return true;
  }
  void SetNSLanguageCode(std::string_view codes) override { values["NSLanguageCode"] = codes; }
  int GetTonerMaxLife(int fallback) const override { return GetNumber("TonerMaxLife", fallback); }
  void SetTonerMaxLife(int life) override { SetNumber("TonerMaxLife", life); }
  int GetCurrentTonerLife(std::string_view id) const override { return GetNumber(Key("CurrentTonerLife", id), 0); }
  void SetCurrentTonerLife(std::string_view id, int life) override { SetNumber(Key("CurrentTonerLife", id), life); }
  int GetTonerChangeCount(std::string_view id) const override { return GetNumber(Key("TonerChangeCount", id), 0); }
  void SetTonerChangeCount(std::string_view id, int count) override { SetNumber(Key("TonerChangeCount", id), count); }

 private:
  static std::string Key(std::string_view key, std::string_view id) {
    return std::string(key) + (id.empty() ? "" : "_") + std::string(id);
  }
  bool GetText(const std::string& key, std::string& text) const {
    const auto found = values.find(key);
    if (found == values.end()) return false;
    text = found->second;
    return true;
  }
  bool GetSwitch(const std::string& key, bool& on) const {
    std::string text;
    if (!GetText(key, text)) return false;
    on = text == "1";
    return true;
  }
  int GetNumber(const std::string& key, int fallback) const {
    std::string text;
    return GetText(key, text) ? std::stoi(text) : fallback;
  }
  void SetNumber(const std::string& key, int number) { values[key] = std::to_string(number); }
};

}  // namespace zt
