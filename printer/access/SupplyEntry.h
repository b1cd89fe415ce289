#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "TonerRecord.h"

namespace zt {

// SupplyKind says what a supply entry is about: a toner, by its colour, or the supply unit of the printer. The toners
// have the numbers of their colours.
enum class SupplyKind : std::uint32_t {
  Cyan = static_cast<std::uint32_t>(TonerColour::Cyan),
  Magenta = static_cast<std::uint32_t>(TonerColour::Magenta),
  Yellow = static_cast<std::uint32_t>(TonerColour::Yellow),
  Black = static_cast<std::uint32_t>(TonerColour::Black),
  Unit = 5,
};

// ColourOf returns the colour of a toner; the unit has none, which is no colour either.
constexpr TonerColour ColourOf(SupplyKind kind) { return static_cast<TonerColour>(kind); }

// SupplyAttribute identifies one text of a supply entry. The unit has attributes of its own, numbered from 1.
enum class SupplyAttribute : std::uint8_t {
  UnitIBL = 1,
  UnitTTime = 2,
  VendorName = 3,
  ModelID = 4,
  SupplierID = 5,
  SerialNumber = 6,
  InstalledDate = 7,  // "YYYY-MM-DD"
  Level = 8,          // remaining percent, decimal; a negative number is a code of the Printer MIB (RFC 3805)
};

// SupplyEntry is what a printer tells about one supply. A text that it does not tell is absent.
struct SupplyEntry {
  SupplyKind kind;
  std::map<SupplyAttribute, std::string> attributes;
  bool operator==(const SupplyEntry&) const = default;
};

}  // namespace zt
