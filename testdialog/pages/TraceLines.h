#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Trace.h"

namespace zt {

// TraceLine is one line of the trace, as the log would hold it.
struct TraceLine {
  Severity severity;
  std::wstring text;  // time, source and message
};

// TraceLines keeps the last lines of the trace for the page and the diagnosis; one thread at a time.
class TraceLines {
 public:
  static constexpr std::size_t kMost = 5000;

  // Add keeps the line; the oldest go when there are more than kMost.
  void Add(TraceLine line);

  // Text returns those that are at least as grave as `least`, one a line with CR LF, at most the last `most` of them.
  std::wstring Text(Severity least, std::size_t most = kMost) const;

  void Clear() { lines_.clear(); }

 private:
  std::vector<TraceLine> lines_;
};

}  // namespace zt
