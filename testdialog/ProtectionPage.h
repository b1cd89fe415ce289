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

// ReadProtection reads state and toner life of a printer that was initialised and says, by the rules of the run, what
// it would ask the user now. It records nothing.
ProtectionFacts ReadProtection(IZOLTDataProvider& provider, ZOLTSkipChecker& skipChecker);

}  // namespace zt
