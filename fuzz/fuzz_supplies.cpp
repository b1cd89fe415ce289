// The walked columns of a network printer's supply tables, each of a length of its own.

#include "Input.h"
#include "Require.h"
#include "SupplyReading.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  zt::SupplyColumns columns;
  const std::size_t rows = input.byte() % 8;
  const auto length = [&](bool mayBeShorter) {
    const std::size_t byte = input.byte();
    return mayBeShorter || byte % 16 == 0 ? byte % 8 : rows;
  };
  for (std::vector<std::int64_t>* column : {&columns.types, &columns.maxima, &columns.levels, &columns.colors}) {
    column->resize(length(column == &columns.colors));
    // Small numbers are common: a type, a colour, a percentage.
    for (std::int64_t& cell : *column)
      cell = input.byte() % 2 ? input.byte() % 32 : static_cast<std::int32_t>(input.number());
  }
  for (std::vector<std::string>* column :
       {&columns.vendors, &columns.suppliers, &columns.models, &columns.serials, &columns.dates}) {
    const bool needed = column != &columns.suppliers && column != &columns.models;
    column->resize(needed && input.byte() % 16 ? columns.colors.size() : length(true));
    for (std::string& cell : *column) cell = input.text(input.byte() % 16);
  }
  if (!zt::HasPublicTable(columns) || !zt::HasPrivateTable(columns)) return 0;
  zt::Codes codes;
  const std::vector<zt::SupplyEntry> supplies = zt::ReadSupplies(columns, codes);
  require(supplies.size() <= columns.types.size(), "a toner has a row");
  for (const zt::SupplyEntry& supply : supplies) {
    require(!zt::ColourLetter(zt::ColourOf(supply.kind)).empty(), "a toner has a colour");
    const auto level = supply.attributes.find(zt::SupplyAttribute::Level);
    require(level == supply.attributes.end() || std::stol(level->second) <= 100, "a level is 100 at most");
  }
  return 0;
}
