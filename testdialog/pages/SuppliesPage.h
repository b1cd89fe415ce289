#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "IZOLTDataProvider.h"
#include "Joined.h"
#include "KVFPrinter.h"
#include "Row.h"
#include "TonerRecord.h"

namespace zt {

// Gauge is one toner as it is drawn: how full, or, without a percentage, the printer's own word for it.
struct Gauge {
  TonerColour colour;
  std::optional<int> percent;  // 0 to 100
  std::wstring text;           // "73 %", "some left"
  bool operator==(const Gauge&) const = default;
};

struct Supplies {
  std::vector<Gauge> gauges;  // in the printer's order
  std::vector<Row> rows;      // per toner what else is known; then counters and unit values; or why nothing is
};

// ReadSupplies reads the toners, the counters and the supply unit of a printer that is open.
Supplies ReadSupplies(KVFPrinter& printer);

// This one reads those of the virtual printer, which has no access of that kind, through the runs' interface.
Supplies ReadSupplies(IZOLTDataProvider& provider);

// ColourName returns the name of a toner's colour.
Ascii ColourName(TonerColour colour);

// LevelText words a level: a percentage, or the code of the Printer MIB (RFC 3805, prtMarkerSuppliesLevel): -1 no
// restriction, -2 unknown, -3 some left.
std::wstring LevelText(std::string_view level);

}  // namespace zt
