#include "LogLine.h"

#include <cstdio>

#include "Text.h"

namespace zt {
namespace {

constexpr std::string_view kSystemSuffix = "_win";

// Compilers write source paths with either separator. The suffix that marks a source for Windows is no part of its
// module's name.
std::string_view ModuleName(std::string_view path) {
  const std::size_t separator = path.find_last_of("/\\");
  if (separator != std::string_view::npos) path.remove_prefix(separator + 1);
  path = path.substr(0, path.rfind('.'));
  if (path.ends_with(kSystemSuffix)) path.remove_suffix(kSystemSuffix.size());
  return path;
}

}  // namespace

std::string LogPrefix(const LogMoment& moment, std::optional<std::uint32_t> threadId) {
  char prefix[80];
  const auto seconds = static_cast<unsigned long long>(moment.ticks / 1000);
  const auto milliseconds = static_cast<unsigned>(moment.ticks % 1000);
  if (threadId) {
    std::snprintf(prefix, sizeof prefix, "%02u-%02u %02u:%02u\t%llu.%03u\t%04u", moment.month, moment.day, moment.hour,
                  moment.minute, seconds, milliseconds, static_cast<unsigned>(*threadId));
  } else {
    std::snprintf(prefix, sizeof prefix, "%02u-%02u %02u:%02u\t%llu.03%u", moment.month, moment.day, moment.hour,
                  moment.minute, seconds, milliseconds);
  }
  return prefix;
}

std::string LogBody(Severity severity, std::string_view source, int line, std::string_view message) {
  return (TextBuilder() << ModuleName(source) << "," << line << "\t" << static_cast<unsigned>(severity) << "\t"
                        << OnOneLine(message))
      .Take();
}

}  // namespace zt
