#pragma once

#include <optional>
#include <string>

namespace zt {

// SkipRule names one of the rules that keep a start from repeating what was done, or failed, a short time ago.
enum class SkipRule {
  LastIOFail,      // the printer could not be read
  LastServerFail,  // the report server could not be reached; of no printer
  LastSend,        // a print-volume report was sent
  LastPPSend,      // a product-protection report was sent
  LastPPNormal,    // a normal product-protection report was sent
};

// SkipDecision is what a rule says now, and why.
struct SkipDecision {
  bool skips = false;
  std::string last;                  // the time text that the rule looked at; empty without one
  int days = 0;                      // so long it counts
  std::optional<std::string> until;  // the time text from which on it does not count; nothing when `last` is no time
};

}  // namespace zt
