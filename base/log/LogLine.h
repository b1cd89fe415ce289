#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Trace.h"

namespace zt {

// LogMoment is when a line was written: local time, and the tick count since boot in milliseconds.
struct LogMoment {
  unsigned month;  // 1 to 12
  unsigned day;
  unsigned hour;
  unsigned minute;
  std::uint64_t ticks;
};

// LogPrefix formats date, time, ticks and, when given, the thread ID: the first fields of a line, separated by tabs.
// Without a thread ID the tick field is malformed, on purpose: a literal "03" stands before the unpadded milliseconds,
// as readers of old logs know it.
std::string LogPrefix(const LogMoment& moment, std::optional<std::uint32_t> threadId);

// LogBody formats source, severity and message: the last fields of a line, separated by tabs, without a line end.
// The source is shown as "module,line": the file name without folder, extension and "_win". A line break in the message
// is written as a blank.
std::string LogBody(Severity severity, std::string_view source, int line, std::string_view message);

}  // namespace zt
