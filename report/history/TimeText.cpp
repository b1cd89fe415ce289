#include "TimeText.h"

#include <cstdint>
#include <cstdio>
#include <vector>

#include "LocalTime.h"
#include "Text.h"
#include "Trace.h"

namespace zt {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;

struct TimeParts {
  int year;
  int month;
  int day;
  int hour;
  int minute;
  int second;
};

std::optional<TimeParts> ReadParts(std::string_view text) {
  const std::vector<std::string_view> tokens = SplitAny(text, "- /:");
  if (tokens.size() < 3) return std::nullopt;
  // A part of the time of day counts only when another token follows it, on purpose: histories compare by the minute.
  const auto followed = [&](std::size_t index) {
    return tokens.size() > index + 1 ? ReadLeadingDecimal(tokens[index]) : 0;
  };
  const TimeParts parts = {ReadLeadingDecimal(tokens[0]),
                           ReadLeadingDecimal(tokens[1]),
                           ReadLeadingDecimal(tokens[2]),
                           followed(3),
                           followed(4),
                           followed(5)};
  const bool inRange = parts.year >= 1900 && parts.month >= 1 && parts.month <= 12 && parts.day >= 1 &&
                       parts.day <= 31 && parts.hour <= 23 && parts.minute <= 59 && parts.second <= 59;
  return inRange ? std::optional(parts) : std::nullopt;
}

// A stored time that cannot be read is worth a line: it never leads to a skip.
std::optional<std::time_t> ParseOrTrace(std::string_view text) {
  const std::optional<std::time_t> time = ParseTimeText(text);
  if (!time) ZT_TRACE(Error, "Can't convert time : " << text);
  return time;
}

std::int64_t WholeDays(std::time_t from, std::time_t to) {
  return (static_cast<std::int64_t>(to) - static_cast<std::int64_t>(from)) / kSecondsPerDay;
}

}  // namespace

std::string FormatLocalTime(std::time_t time) {
  const std::optional<std::tm> local = ToLocalTime(time);
  if (!local) return "0000-00-00 -1:-1:-1";
  const long long year = local->tm_year + 1900LL;  // An int does not hold it for every time that has a year.
  char text[80];
  std::snprintf(text, sizeof text, "%04lld-%02d-%02d %02d:%02d:%02d", year, local->tm_mon + 1, local->tm_mday,
                local->tm_hour, local->tm_min, local->tm_sec);
  return text;
}

std::string NowText(OptionalTimeText reference, const Now& now) {
  return reference && !reference->empty() ? std::string(*reference) : FormatLocalTime(now());
}

bool IsTimeText(std::string_view text) { return ReadParts(text).has_value(); }

std::optional<std::time_t> ParseTimeText(std::string_view text) {
  const std::optional<TimeParts> parts = ReadParts(text);
  if (!parts) return std::nullopt;
  std::tm local = {};
  local.tm_year = parts->year - 1900;
  local.tm_mon = parts->month - 1;
  local.tm_mday = parts->day;
  local.tm_hour = parts->hour;
  local.tm_min = parts->minute;
  local.tm_sec = parts->second;
  local.tm_isdst = -1;
  // -1 is also the second before 1970; only a conversion that succeeded sets the day of the week.
  local.tm_wday = -1;
  const std::time_t time = std::mktime(&local);
  if (time == -1 && local.tm_wday == -1) return std::nullopt;
  return time;
}

std::optional<std::string> TimeTextAfterDays(std::string_view text, int days) {
  const std::optional<std::time_t> time = ParseTimeText(text);
  if (!time) return std::nullopt;
  return FormatLocalTime(static_cast<std::time_t>(*time + kSecondsPerDay * days));
}

bool IsWithinDays(std::string_view text, int days, const Now& now) {
  if (text.empty()) return false;
  const std::optional<std::time_t> time = ParseOrTrace(text);
  if (!time) return false;
  const std::int64_t age = WholeDays(*time, now());
  return age >= 0 && age < days;
}

bool IsWithinDaysOf(std::string_view reference, std::string_view text, int days, const Now& now) {
  if (text.empty()) return false;
  const std::optional<std::time_t> time = ParseOrTrace(text);
  if (!time) return false;
  const std::optional<std::time_t> present = reference.empty() ? std::optional(now()) : ParseTimeText(reference);
  return present && WholeDays(*time, *present) < days;
}

}  // namespace zt
