#pragma once

#include <functional>

namespace zt {

// ExchangeGate is asked before each exchange with a printer or a server. While it returns false no exchange is made:
// each fails at once, as if nobody had answered, so that work which is no longer wanted ends soon and in the ordinary
// way. An empty gate is open.
using ExchangeGate = std::function<bool()>;

inline bool IsOpen(const ExchangeGate& gate) { return !gate || gate(); }

}  // namespace zt
