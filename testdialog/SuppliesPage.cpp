#include "SuppliesPage.h"

#include <limits>
#include <utility>

#include "Text.h"
#include "Words.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

constexpr int kFull = 100;

struct Part {
  SupplyAttribute attribute;
  const char* element;  // its name in a report
  std::wstring_view label;
};
constexpr Part kTonerParts[] = {
    {SupplyAttribute::InstalledDate, "InstalledDate", L"installed on"},
    {SupplyAttribute::VendorName, "VendorName", L"vendor"},
    {SupplyAttribute::ModelID, "ModelID", L"model"},
    {SupplyAttribute::SupplierID, "SupplierID", L"supplier"},
    {SupplyAttribute::SerialNumber, "SerialNumber", L"serial number"},
};
constexpr Part kUnitParts[] = {
    {SupplyAttribute::UnitIBL, "IBL", L"Supply unit, IBL"},
    {SupplyAttribute::UnitTTime, "TTime", L"Supply unit, TTime"},
};

std::wstring ColourName(TonerColour colour) {
  switch (colour) {
    case TonerColour::Cyan:
      return L"Cyan";
    case TonerColour::Magenta:
      return L"Magenta";
    case TonerColour::Yellow:
      return L"Yellow";
    case TonerColour::Black:
      return L"Black";
  }
  return L"Unknown colour";
}

std::string TextOf(const SupplyEntry& entry, SupplyAttribute attribute) {
  const auto found = entry.attributes.find(attribute);
  return found == entry.attributes.end() ? std::string() : found->second;
}

void AddToner(const SupplyEntry& entry, Supplies& supplies) {
  const std::string level = TextOf(entry, SupplyAttribute::Level);
  const std::optional<int> number = ParseDecimal(level);
  const bool isPercentage = number && *number >= 0 && *number <= kFull;
  Gauge gauge{ColourOf(entry.kind), isPercentage ? number : std::nullopt, LevelText(level)};
  const std::wstring colour = ColourName(gauge.colour);
  supplies.rows.push_back({colour + L" toner", gauge.text,
                           number && *number < 0 ? L"The printer's code " + std::to_wstring(*number) + L"." : L""});
  for (const Part& part : kTonerParts) {
    const std::string text = TextOf(entry, part.attribute);
    if (!text.empty()) supplies.rows.push_back({colour + L", " + std::wstring(part.label), Shown(text), L""});
  }
  supplies.gauges.push_back(std::move(gauge));
}

void AddUnit(const SupplyEntry& entry, std::vector<Row>& rows) {
  for (const Part& part : kUnitParts) {
    const std::string text = TextOf(entry, part.attribute);
    rows.push_back({std::wstring(part.label), Shown(text), text.empty() ? L"The printer does not tell it." : L""});
  }
}

Row CounterRow(std::wstring label, std::uint32_t count, std::wstring remark) {
  // Codes below 0 count modulo 2^32.
  if (count > static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max())) {
    return {std::move(label), std::to_wstring(static_cast<std::int32_t>(count)), L"A code, no figure: not known."};
  }
  return {std::move(label), std::to_wstring(count), std::move(remark)};
}

void AddCounters(std::uint32_t largest, std::uint32_t total, std::vector<Row>& rows) {
  rows.push_back(CounterRow(L"Largest counter", largest, L"The toner life, which the limit applies to."));
  rows.push_back(CounterRow(L"Total of the counters", total, L"Another total than last time means another toner."));
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

std::wstring LevelText(std::string_view level) {
  const std::optional<int> number = ParseDecimal(level);
  if (level.empty()) return L"not told";
  if (!number || *number > kFull) return L"no percentage: " + Shown(level);
  if (*number >= 0) return std::to_wstring(*number) + L" %";
  switch (*number) {
    case -1:
      return L"no limit told";
    case -2:
      return L"level not known";
    case -3:
      return L"some left";
    default:
      return L"level not known: code " + std::to_wstring(*number);
  }
}

Supplies ReadSupplies(KVFPrinter& printer) {
  Supplies supplies;
  std::vector<SupplyEntry> toners;
  const HResult result = printer.GetSupplyLevels(toners);
  if (!Succeeded(result)) {
    supplies.rows.push_back({L"Toners", L"",
                             WhyNotRead(result, printer.IsUSB(),
                                        L"The printer does not tell its toners, or its tables of them do not fit.")});
  } else if (toners.empty()) {
    supplies.rows.push_back({L"Toners", L"none", L"The printer's table of supplies holds no toner."});
  }
  for (const SupplyEntry& toner : toners) AddToner(toner, supplies);

  std::uint32_t largest = 0;
  std::uint32_t total = 0;
  if (const HResult read = printer.GetPageCounters(largest, total); Succeeded(read)) {
    AddCounters(largest, total, supplies.rows);
  } else {
    supplies.rows.push_back(
        {L"Counters", L"", WhyNotRead(read, printer.IsUSB(), L"The printer's table of counters cannot be read.")});
  }

  std::vector<SupplyEntry> units;
  const HResult unitResult = printer.GetSupplyUnitInfo(units);
  for (const SupplyEntry& unit : units) AddUnit(unit, supplies.rows);
  if (units.empty()) {
    supplies.rows.push_back(
        {L"Supply unit", L"", WhyNotRead(unitResult, printer.IsUSB(), L"The printer does not tell its figures.")});
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
  if (provider.GetTonerLife(&largest, &total)) AddCounters(largest, total, supplies.rows);
  AddUnit(EntryOf(SupplyKind::Unit, record.DeviceValues(), kUnitParts), supplies.rows);
  return supplies;
}

}  // namespace zt
