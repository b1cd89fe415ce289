#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Codes.h"
#include "SupplyEntry.h"

namespace zt {

// SupplyColumns are the walked columns of a printer's two supply tables. Rows of the two belong together by position.
struct SupplyColumns {
  // Printer MIB (RFC 3805), prtMarkerSuppliesTable; all of one length in a usable table.
  std::vector<std::int64_t> types;  // prtMarkerSuppliesType; 3 is toner
  std::vector<std::int64_t> maxima;
  std::vector<std::int64_t> levels;

  // The maker's table; the columns marked with * may be shorter than the others.
  std::vector<std::int64_t> colors;
  std::vector<std::string> vendors;
  std::vector<std::string> suppliers;  // *
  std::vector<std::string> models;     // *
  std::vector<std::string> serials;
  std::vector<std::string> dates;
};

// HasPublicTable and HasPrivateTable tell whether the columns of a table are there and of the lengths that they must
// have.
bool HasPublicTable(const SupplyColumns& columns);
bool HasPrivateTable(const SupplyColumns& columns);

// ReadSupplies makes one entry per toner row whose colour is known, and adds a code for each gap: "/no toner pub"
// (no toner row), "/unknown color" (the row is left out), "/invalid level" (above 100, no level), "/modelid missing",
// "/no instdate" and "/invalid instdate". Both tables must be usable.
std::vector<SupplyEntry> ReadSupplies(const SupplyColumns& columns, Codes& codes);

// ConvertDate turns the printer's date, "YYYYMMDD…" as hexadecimal digits or the bytes that these digits stand for,
// into "YYYY-MM-DD". Each part is read as a hexadecimal number. Nothing for a value that is too short or holds
// anything else.
std::optional<std::string> ConvertDate(std::string_view value);

}  // namespace zt
