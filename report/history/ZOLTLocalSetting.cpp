#include "ZOLTLocalSetting.h"

#include <algorithm>
#include <iterator>

#include "Text.h"

namespace zt {
namespace {

constexpr std::string_view kCommon = "Common";
constexpr std::string_view kHistory = "History";

// A switch that was never set has no value; "off" is not 0.
constexpr std::string_view kSwitchedOn = "1";
constexpr std::string_view kSwitchedOff = "2";

// Characters that would end a key when the file is read again.
bool EndsKey(char character) { return std::string_view("=;\r\n").find(character) != std::string_view::npos; }

// A printer whose serial number holds such a character must not be forgotten at each start.
std::string PrinterKey(std::string_view key, std::string_view id) {
  id = Trim(id);
  std::string printerKey(key);
  if (id.empty()) return printerKey;
  printerKey += '_';
  std::replace_copy_if(id.begin(), id.end(), std::back_inserter(printerKey), EndsKey, '_');
  return printerKey;
}

}  // namespace

bool ZOLTLocalSetting::GetSwitch(std::string_view key, bool& on) const {
  std::string text;
  if (!GetValue(kCommon, key, text) || (text != kSwitchedOn && text != kSwitchedOff)) return false;
  on = text == kSwitchedOn;
  return true;
}

void ZOLTLocalSetting::SetSwitch(std::string_view key, bool on) {
  SetValue(kCommon, key, on ? kSwitchedOn : kSwitchedOff);
}

int ZOLTLocalSetting::GetNumber(std::string_view section, std::string_view key, int fallback) const {
  std::string text;
  return GetValue(section, key, text) ? ReadLeadingDecimal(text) : fallback;
}

void ZOLTLocalSetting::SetNumber(std::string_view section, std::string_view key, int number) {
  SetValue(section, key, std::to_string(number));
}

bool ZOLTLocalSetting::GetTime(std::string_view key, std::string_view id, std::string& time) const {
  return GetValue(kHistory, PrinterKey(key, id), time);
}

void ZOLTLocalSetting::SetTime(std::string_view key, std::string_view id, std::string_view time) {
  SetValue(kHistory, PrinterKey(key, id), time);
}

bool ZOLTLocalSetting::GetZOLTEnabled(bool& enabled) const { return GetSwitch("ZOLTEnabled", enabled); }
void ZOLTLocalSetting::SetZOLTEnabled(bool enabled) { SetSwitch("ZOLTEnabled", enabled); }

bool ZOLTLocalSetting::GetPPAEnabled(bool& enabled) const { return GetSwitch("PPAEnabled", enabled); }
void ZOLTLocalSetting::SetPPAEnabled(bool enabled) { SetSwitch("PPAEnabled", enabled); }

int ZOLTLocalSetting::GetSendIntervalDays(int fallback) const {
  return GetNumber(kCommon, "SendIntervalDays", fallback);
}
void ZOLTLocalSetting::SetSendIntervalDays(int days) { SetNumber(kCommon, "SendIntervalDays", days); }

int ZOLTLocalSetting::GetPPNormalSendInterval(int fallback) const {
  return GetNumber(kCommon, "PPNormalSendInterval", fallback);
}
void ZOLTLocalSetting::SetPPNormalSendInterval(int days) { SetNumber(kCommon, "PPNormalSendInterval", days); }

bool ZOLTLocalSetting::GetLastCollectFailedTime(std::string_view id, std::string& time) const {
  return GetTime("LastCollectFailedTime", id, time);
}
void ZOLTLocalSetting::SetLastCollectFailedTime(std::string_view id, std::string_view time) {
  SetTime("LastCollectFailedTime", id, time);
}

bool ZOLTLocalSetting::GetLastCollectTime(std::string_view id, std::string& time) const {
  return GetTime("LastCollectTime", id, time);
}
void ZOLTLocalSetting::SetLastCollectTime(std::string_view id, std::string_view time) {
  SetTime("LastCollectTime", id, time);
}

bool ZOLTLocalSetting::GetLastSendTime(std::string_view id, std::string& time) const {
  return GetTime("LastSendTime", id, time);
}
void ZOLTLocalSetting::SetLastSendTime(std::string_view id, std::string_view time) {
  SetTime("LastSendTime", id, time);
}

bool ZOLTLocalSetting::GetLastServerFailedTime(std::string& time) const {
  return GetTime("LastServerFailedTime", {}, time);
}
void ZOLTLocalSetting::SetLastServerFailedTime(std::string_view time) { SetTime("LastServerFailedTime", {}, time); }

bool ZOLTLocalSetting::GetLastPPSendTime(std::string_view id, std::string& time) const {
  return GetTime("LastPPSendTime", id, time);
}
void ZOLTLocalSetting::SetLastPPSendTime(std::string_view id, std::string_view time) {
  SetTime("LastPPSendTime", id, time);
}

bool ZOLTLocalSetting::GetLastPPNormalTime(std::string_view id, std::string& time) const {
  return GetTime("LastPPNormalTime", id, time);
}
void ZOLTLocalSetting::SetLastPPNormalTime(std::string_view id, std::string_view time) {
  SetTime("LastPPNormalTime", id, time);
}

int ZOLTLocalSetting::GetSBXPolicyReceived() const { return GetNumber(kCommon, "SBXPolicyReceived", 0); }
void ZOLTLocalSetting::SetSBXPolicyReceived(bool received) {
  SetNumber(kCommon, "SBXPolicyReceived", received ? 1 : 0);
}

int ZOLTLocalSetting::GetTransmissionDuration(int fallback) const {
  return GetNumber(kCommon, "TransmissionDuration", fallback);
}
void ZOLTLocalSetting::SetTransmissionDuration(int days) { SetNumber(kCommon, "TransmissionDuration", days); }

bool ZOLTLocalSetting::GetNSLanguageCode(std::string& codes) const {
  if (!GetValue(kCommon, "NSLanguageCode", codes)) codes = "24, 59";
  return true;
}
void ZOLTLocalSetting::SetNSLanguageCode(std::string_view codes) { SetValue(kCommon, "NSLanguageCode", codes); }

int ZOLTLocalSetting::GetTonerMaxLife(int fallback) const { return GetNumber(kCommon, "TonerMaxLife", fallback); }
void ZOLTLocalSetting::SetTonerMaxLife(int life) { SetNumber(kCommon, "TonerMaxLife", life); }

int ZOLTLocalSetting::GetCurrentTonerLife(std::string_view id) const {
  return GetNumber(kHistory, PrinterKey("CurrentTonerLife", id), 0);
}
void ZOLTLocalSetting::SetCurrentTonerLife(std::string_view id, int life) {
  SetNumber(kHistory, PrinterKey("CurrentTonerLife", id), life);
}

int ZOLTLocalSetting::GetTonerChangeCount(std::string_view id) const {
  return GetNumber(kHistory, PrinterKey("TonerChangeCount", id), 0);
}
void ZOLTLocalSetting::SetTonerChangeCount(std::string_view id, int count) {
  SetNumber(kHistory, PrinterKey("TonerChangeCount", id), count);
}

}  // namespace zt
