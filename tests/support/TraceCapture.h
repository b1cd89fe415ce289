#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "Trace.h"

namespace zt {

// TraceCapture collects, while it lives, what the code under test traces and writes to the debugger output, at level 4.
// One at a time.
class TraceCapture {
 public:
  TraceCapture() {
    current = this;
    traceLevel = 4;
  }
  ~TraceCapture() {
    current = nullptr;
    traceLevel = 0;
  }
  TraceCapture(const TraceCapture&) = delete;
  TraceCapture& operator=(const TraceCapture&) = delete;

  const std::vector<std::string>& Texts() const { return lines; }
  bool Has(std::string_view levelAndText) const {
    return std::find(lines.begin(), lines.end(), levelAndText) != lines.end();
  }

  std::vector<std::string> lines;  // "level text", in order: {"3 not valid IO. bye~"}
  std::vector<std::string> debug;

  inline static TraceCapture* current = nullptr;
};

}  // namespace zt
