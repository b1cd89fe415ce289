#include "SuppliesPage.h"

#include <limits>
#include <utility>

#include "Joined.h"
#include "Text.h"
#include "Words.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

constexpr int kFull = 100;

struct Part {
  SupplyAttribute attribute;
  const char* element;  // its name in a report
  Ascii label;
};
constexpr Part kTonerParts[] = {
    {SupplyAttribute::InstalledDate, "InstalledDate", "installed on"},
    {SupplyAttribute::VendorName, "VendorName", "vendor"},
    {SupplyAttribute::ModelID, "ModelID", "model"},
    {SupplyAttribute::SupplierID, "SupplierID", "supplier"},
    {SupplyAttribute::SerialNumber, "SerialNumber", "serial number"},
};
constexpr Part kUnitParts[] = {
    {SupplyAttribute::UnitIBL, "IB", "Supply unit, IB"},
    {SupplyAttribute::UnitTTime, "TTime", "Supply unit, TTime"},
};

std::string TextOf(const SupplyEntry& entry, SupplyAttribute attribute) {
  const auto found = entry.attributes.find(attribute);
  return found == entry.attributes.end() ? std::string() : found->second;
}

void AddToner(const SupplyEntry& entry, Supplies& supplies) {
  const std::string level = TextOf(entry, SupplyAttribute::Level);
  const std::optional<int> number = ParseDecimal(level);
  const bool isPercentage = number && *number >= 0 && *number <= kFull;
  Gauge gauge{ColourOf(entry.kind), isPercentage ? number : std::nullopt, LevelText(level)};
  const Ascii colour = ColourName(gauge.colour);
  Row& row = AddRow(supplies.rows, colour, gauge.text);
  row.label += L" toner";
  if (number && *number < 0) row.remark = Joined({"The printer's code ", *number, "."});
  for (const Part& part : kTonerParts) {
    const std::string text = TextOf(entry, part.attribute);
    if (!text.empty()) AddRow(supplies.rows, "", text).label = Joined({colour, ", ", part.label});
  }
  supplies.gauges.push_back(std::move(gauge));
}

void AddUnit(const SupplyEntry& entry, std::vector<Row>& rows) {
  for (const Part& part : kUnitParts) {
    const std::string text = TextOf(entry, part.attribute);
    AddRow(rows, part.label, text, text.empty() ? Ascii("The printer does not tell it.") : Ascii(""));
  }
}

void AddCounter(std::vector<Row>& rows, Ascii label, std::uint32_t count, Ascii remark) {
  // Codes below 0 count modulo 2^32.
  if (count > static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max())) {
    AddRow(rows, label, static_cast<std::int32_t>(count), "A code, no figure: not known.");
  } else {
    AddRow(rows, label, count, remark);
  }
}

void AddCounters(std::vector<Row>& rows, std::uint32_t largest, std::uint32_t total) {
  AddCounter(rows, "Largest counter", largest, "The toner life, which the limit applies to.");
  AddCounter(rows, "Total of the counters", total, "Another total than last time means another toner.");
}

template <std::size_t Size>
SupplyEntry EntryOf(SupplyKind kind, const ElementValues& values, const Part (&parts)[Size]) {
  SupplyEntry entry{kind, {}};
  for (const Part& part : parts) {
    if (const auto found = values.find(part.element); found != values.end()) {
      entry.attributes[part.attribute] = found->second;
    }
  }
  return entry;
}

}  // namespace

Ascii ColourName(TonerColour colour) {
  switch (colour) {
    case TonerColour::Cyan:
      return "Cyan";
    case TonerColour::Magenta:
      return "Magenta";
    case TonerColour::Yellow:
      return "Yellow";
    case TonerColour::Black:
      return "Black";
  }
  return "Unknown colour";
}

std::wstring LevelText(std::string_view level) {
  const std::optional<int> number = ParseDecimal(level);
  if (level.empty()) return Joined({"not told"});
  if (!number || *number > kFull) return Joined({"no percentage: ", level});
  if (*number >= 0) return Joined({*number, " %"});
  switch (*number) {
    case -1:
      return Joined({"no limit told"});
    case -2:
      return Joined({"level not known"});
    case -3:
      return Joined({"some left"});
    default:
      return Joined({"level not known: code ", *number});
  }
}

Supplies ReadSupplies(KVFPrinter& printer) {
  Supplies supplies;
  std::vector<SupplyEntry> toners;
  const HResult result = printer.GetSupplyLevels(toners);
  if (!Succeeded(result)) {
    AddRow(
        supplies.rows, "Toners", "",
        WhyNotRead(result, printer.IsUSB(), "The printer does not tell its toners, or its tables of them do not fit."));
  } else if (toners.empty()) {
    AddRow(supplies.rows, "Toners", "none", "The printer's table of supplies holds no toner.");
  }
  for (const SupplyEntry& toner : toners) AddToner(toner, supplies);

  std::uint32_t largest = 0;
  std::uint32_t total = 0;
  if (const HResult read = printer.GetPageCounters(largest, total); Succeeded(read)) {
    AddCounters(supplies.rows, largest, total);
  } else {
    AddRow(supplies.rows, "Counters", "",
           WhyNotRead(read, printer.IsUSB(), "The printer's table of counters cannot be read."));
  }

  std::vector<SupplyEntry> units;
  const HResult unitResult = printer.GetSupplyUnitInfo(units);
  for (const SupplyEntry& unit : units) AddUnit(unit, supplies.rows);
  if (units.empty()) {
    AddRow(supplies.rows, "Supply unit", "",
           WhyNotRead(unitResult, printer.IsUSB(), "The printer does not tell its figures."));
  }
  return supplies;
}

Supplies ReadSupplies(IZOLTDataProvider& provider) {
  Supplies supplies;
  ZOLTInformation record;
  if (!provider.Initialize(false) || !provider.CollectZOLT(record)) return supplies;
  for (const TonerRecord& toner : record.Toners()) {
    SupplyEntry entry = EntryOf(static_cast<SupplyKind>(toner.Colour()), toner.Values(), kTonerParts);
    if (const auto level = toner.Values().find("Level"); level != toner.Values().end()) {
      entry.attributes[SupplyAttribute::Level] = level->second;
    }
    AddToner(entry, supplies);
  }
  std::uint32_t largest = 0;
  std::uint32_t total = 0;
  if (provider.GetTonerLife(&largest, &total)) AddCounters(supplies.rows, largest, total);
  AddUnit(EntryOf(SupplyKind::Unit, record.DeviceValues(), kUnitParts), supplies.rows);
  return supplies;
}

}  // namespace zt
