#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

#include "Clock.h"

namespace zt {

// Times are kept as texts "YYYY-MM-DD hh:mm:ss" in local time; std::time_t counts seconds since 1970-01-01 UTC. Days
// are spans of 86400 seconds, truncated toward zero.

// OptionalTimeText is a time text that takes the place of a stored or of the current time; none leaves that in force.
// An empty text is a text.
using OptionalTimeText = std::optional<std::string_view>;

// FormatLocalTime writes the local time of `time`. A time that has none gives "0000-00-00 -1:-1:-1".
std::string FormatLocalTime(std::time_t time);

// NowText returns the reference when it is there and not empty, else the current time.
std::string NowText(OptionalTimeText reference, const Now& now);

// IsTimeText reports whether the text has at least year, month and day and each part is in its range: the year from
// 1900, the day to 31 in every month.
bool IsTimeText(std::string_view text);

// ParseTimeText reads a time text; its parts are separated by any run of "-", " ", "/" and ":". A part of the time of
// day counts only when another part follows it:
//   "2014-03-06 10:20:30"     10:20:00
//   "2014-03-06 10:20"        10:00:00
//   "2014-03-06 10"           00:00:00
//   "2014-03-06 10:20:30 0"   10:20:30
// A day beyond the end of its month falls into the next one. Nothing for a text that IsTimeText refuses or that the C
// library cannot convert.
std::optional<std::time_t> ParseTimeText(std::string_view text);

// TimeTextAfterDays returns the time text of the moment so many days after a time: the first at which it is no longer
// within them. Nothing for a text that ParseTimeText refuses.
std::optional<std::string> TimeTextAfterDays(std::string_view text, int days);

// IsWithinDays reports whether the time of `text` lies less than `days` days before now. One that is a day or more
// in the future does not. False for an empty text and, with a trace line, for one that is no time.
bool IsWithinDays(std::string_view text, int days, const Now& now);

// IsWithinDaysOf is the same against a reference time in place of now; an empty reference means now, one that is no
// time makes the result false. Here every time after the reference lies within, on purpose: a simulated date may lie
// before what is stored.
bool IsWithinDaysOf(std::string_view reference, std::string_view text, int days, const Now& now);

}  // namespace zt
