#pragma once

#include <string>
#include <vector>

#include "IZOLTDataProvider.h"
#include "Row.h"
#include "ZOLTSkipChecker.h"

namespace zt {

struct ProtectionFacts {
  std::vector<Row> rows;    // state, toner life, change count, limit, countries, durations
  std::wstring verdict;     // what a run would ask or do now, and why
  bool switchable = false;  // ON and OFF make sense
};

// ReadProtection opens the printer, reads state and toner life, and says by the rules of the run what that would ask
// the user now. It records nothing and does not ask the server, which may give a run another limit.
ProtectionFacts ReadProtection(IZOLTDataProvider& provider, ZOLTSkipChecker& skipChecker);

}  // namespace zt
