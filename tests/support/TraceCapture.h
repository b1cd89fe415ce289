#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Trace.h"

namespace zt {

struct TracedLine {
  Severity severity;
  std::string source;  // file name without folder and extension
  std::string message;
  bool operator==(const TracedLine&) const = default;
};

// TraceCapture collects, while it lives, what the code under test traces and writes to the debugger output, at level 4.
// One at a time.
class TraceCapture {
 public:
  TraceCapture();
  ~TraceCapture();
  TraceCapture(const TraceCapture&) = delete;
  TraceCapture& operator=(const TraceCapture&) = delete;

  // Texts are the lines as "level text", in order: {"3 not valid IO. bye~"}.
  std::vector<std::string> Texts() const;
  bool Has(std::string_view levelAndText) const;

  std::vector<TracedLine> lines;
  std::vector<std::string> debug;
};

}  // namespace zt
