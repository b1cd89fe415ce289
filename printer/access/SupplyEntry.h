#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace zt {

// SupplyKind says what a supply entry is about: a toner, by its colour, or the supply unit of the printer.
enum class SupplyKind : std::uint32_t { Cyan = 1, Magenta = 2, Yellow = 3, Black = 4, Unit = 5 };

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
