#pragma once

#include <string>
#include <vector>

#include "IZOLTLocalSetting.h"
#include "Row.h"
#include "ZOLTSkipChecker.h"

namespace zt {

// RuleLine is one rule of a run, in the order in which the run looks at it.
struct RuleLine {
  std::wstring sentence;  // "A run now would be skipped: last report 2026-11-20, next due 2026-12-20"
  bool stops = false;     // a run now would end here
  bool operator==(const RuleLine&) const = default;
};

// Standing is what a run would find before it looks at its history.
struct Standing {
  bool disabledByAdministrator = false;
  bool settingsUsable = true;
  bool queueFound = true;
  bool queueIsLocal = true;
  bool skipRulesOff = false;  // by the flag "DontCheckSkip"
  bool virtualTest = false;
  std::string address{};       // keys the failures of the printer; empty where it is not known
  std::string serialNumber{};  // keys the reports; empty where it is not known
  std::string queueName{};     // keys the toner life; in the ANSI code page
};

struct History {
  std::vector<Row> rows;              // what is stored, in general and for this printer
  std::vector<RuleLine> printVolume;  // the rules of a print-volume run, in its order
  std::vector<RuleLine> protection;   // those of a product-protection run
};

// ReadHistory describes what the settings hold and what each rule says now. The rules are the skip checker's own
// decisions.
History ReadHistory(const Standing& standing, const IZOLTLocalSetting& settings, ZOLTSkipChecker& skipChecker);

// ClearHistory makes the settings forget this printer, by empty texts and zeros in place of what is stored: the file is
// never cut, and a key that is only left out could be read again from its old end. What is stored in general stays.
void ClearHistory(const Standing& standing, IZOLTLocalSetting& settings);

}  // namespace zt
