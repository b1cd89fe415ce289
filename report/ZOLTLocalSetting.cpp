#include "ZOLTLocalSetting.h"

#include <algorithm>
#include <iterator>

#include "Text.h"

namespace zt {
namespace {

constexpr std::string_view common = "Common";
constexpr std::string_view history = "History";

// A switch that was never set has no value; "off" is not 0.
constexpr std::string_view switchedOn = "1";
constexpr std::string_view switchedOff = "2";

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
  if (!GetValue(common, key, text) || (text != switchedOn && text != switchedOff)) return false;
  on = text == switchedOn;
  return true;
}

void ZOLTLocalSetting::SetSwitch(std::string_view key, bool on) {
  SetValue(common, key, on ? switchedOn : switchedOff);
}

int ZOLTLocalSetting::GetNumber(std::string_view section, std::string_view key, int fallback) const {
  std::string text;
  return GetValue(section, key, text) ? ReadLeadingDecimal(text) : fallback;
}

void ZOLTLocalSetting::SetNumber(std::string_view section, std::string_view key, int number) {
  SetValue(section, key, std::to_string(number));
}

bool ZOLTLocalSetting::GetZOLTEnabled(bool& enabled) const { return GetSwitch("ZOLTEnabled", enabled); }
void ZOLTLocalSetting::SetZOLTEnabled(bool enabled) { SetSwitch("ZOLTEnabled", enabled); }

bool ZOLTLocalSetting::GetPPAEnabled(bool& enabled) const { return GetSwitch("PPAEnabled", enabled); }
void ZOLTLocalSetting::SetPPAEnabled(bool enabled) { SetSwitch("PPAEnabled", enabled); }

int ZOLTLocalSetting::GetSendIntervalDays(int fallback) const {
  return GetNumber(common, "SendIntervalDays", fallback);
}
void ZOLTLocalSetting::SetSendIntervalDays(int days) { SetNumber(common, "SendIntervalDays", days); }

int ZOLTLocalSetting::GetPPNormalSendInterval(int fallback) const {
  return GetNumber(common, "PPNormalSendInterval", fallback);
}
void ZOLTLocalSetting::SetPPNormalSendInterval(int days) { SetNumber(common, "PPNormalSendInterval", days); }

bool ZOLTLocalSetting::GetLastCollectFailedTime(std::string_view id, std::string& time) const {
  return GetValue(history, PrinterKey("LastCollectFailedTime", id), time);
}
void ZOLTLocalSetting::SetLastCollectFailedTime(std::string_view id, std::string_view time) {
  SetValue(history, PrinterKey("LastCollectFailedTime", id), time);
}

bool ZOLTLocalSetting::GetLastCollectTime(std::string_view id, std::string& time) const {
  return GetValue(history, PrinterKey("LastCollectTime", id), time);
}
void ZOLTLocalSetting::SetLastCollectTime(std::string_view id, std::string_view time) {
  SetValue(history, PrinterKey("LastCollectTime", id), time);
}

bool ZOLTLocalSetting::GetLastSendTime(std::string_view id, std::string& time) const {
  return GetValue(history, PrinterKey("LastSendTime", id), time);
}
void ZOLTLocalSetting::SetLastSendTime(std::string_view id, std::string_view time) {
  SetValue(history, PrinterKey("LastSendTime", id), time);
}

bool ZOLTLocalSetting::GetLastServerFailedTime(std::string& time) const {
  return GetValue(history, "LastServerFailedTime", time);
}
void ZOLTLocalSetting::SetLastServerFailedTime(std::string_view time) {
  SetValue(history, "LastServerFailedTime", time);
}

bool ZOLTLocalSetting::GetLastPPSendTime(std::string_view id, std::string& time) const {
  return GetValue(history, PrinterKey("LastPPSendTime", id), time);
}
void ZOLTLocalSetting::SetLastPPSendTime(std::string_view id, std::string_view time) {
  SetValue(history, PrinterKey("LastPPSendTime", id), time);
}

bool ZOLTLocalSetting::GetLastPPNormalTime(std::string_view id, std::string& time) const {
  return GetValue(history, PrinterKey("LastPPNormalTime", id), time);
}
void ZOLTLocalSetting::SetLastPPNormalTime(std::string_view id, std::string_view time) {
  SetValue(history, PrinterKey("LastPPNormalTime", id), time);
}

int ZOLTLocalSetting::GetSBXPolicyReceived() const { return GetNumber(common, "SBXPolicyReceived", 0); }
void ZOLTLocalSetting::SetSBXPolicyReceived(bool received) { SetNumber(common, "SBXPolicyReceived", received ? 1 : 0); }

int ZOLTLocalSetting::GetTransmissionDuration(int fallback) const {
  return GetNumber(common, "TransmissionDuration", fallback);
}
void ZOLTLocalSetting::SetTransmissionDuration(int days) { SetNumber(common, "TransmissionDuration", days); }

bool ZOLTLocalSetting::GetNSLanguageCode(std::string& codes) const {
  if (!GetValue(common, "NSLanguageCode", codes)) codes = "24, 59";
  return true;
}
void ZOLTLocalSetting::SetNSLanguageCode(std::string_view codes) { SetValue(common, "NSLanguageCode", codes); }

int ZOLTLocalSetting::GetTonerMaxLife(int fallback) const { return GetNumber(common, "TonerMaxLife", fallback); }
void ZOLTLocalSetting::SetTonerMaxLife(int life) { SetNumber(common, "TonerMaxLife", life); }

int ZOLTLocalSetting::GetCurrentTonerLife(std::string_view id) const {
  return GetNumber(history, PrinterKey("CurrentTonerLife", id), 0);
}
void ZOLTLocalSetting::SetCurrentTonerLife(std::string_view id, int life) {
  SetNumber(history, PrinterKey("CurrentTonerLife", id), life);
}

int ZOLTLocalSetting::GetTonerChangeCount(std::string_view id) const {
  return GetNumber(history, PrinterKey("TonerChangeCount", id), 0);
}
void ZOLTLocalSetting::SetTonerChangeCount(std::string_view id, int count) {
  SetNumber(history, PrinterKey("TonerChangeCount", id), count);
}

}  // namespace zt
