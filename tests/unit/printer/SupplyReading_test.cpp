#include "SupplyReading.h"

#include <gtest/gtest.h>

#include <limits>

namespace zt {
namespace {

using enum SupplyAttribute;

// One black toner, half full.
SupplyColumns OneToner() {
  SupplyColumns columns;
  columns.types = {3};
  columns.maxima = {200};
  columns.levels = {100};
  columns.colors = {15};
  columns.vendors = {"Velnora"};
  columns.suppliers = {"VLN"};
  columns.models = {"T-1"};
  columns.serials = {"S1"};
  columns.dates = {"07E8030F"};
  return columns;
}

SupplyEntry OnlyEntry(const SupplyColumns& columns) {
  std::string notes;
  std::vector<SupplyEntry> entries = ReadSupplies(columns, notes);
  return entries.size() == 1 ? entries[0] : SupplyEntry{SupplyKind::Unit, {}};
}

std::string NotesOf(const SupplyColumns& columns) {
  std::string notes;
  ReadSupplies(columns, notes);
  return notes;
}

TEST(ReadSupplies, WholeRow) {
  std::string notes;
  const std::vector<SupplyEntry> entries = ReadSupplies(OneToner(), notes);
  const SupplyEntry expected{SupplyKind::Black,
                             {{VendorName, "Velnora"},
                              {ModelID, "T-1"},
                              {SupplierID, "VLN"},
                              {SerialNumber, "S1"},
                              {InstalledDate, "2024-03-15"},
                              {Level, "50"}}};
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0], expected);
  EXPECT_EQ(notes, "");
}

TEST(ReadSupplies, Colors) {
  const std::pair<std::int32_t, SupplyKind> rows[] = {
      {15, SupplyKind::Black}, {16, SupplyKind::Magenta}, {17, SupplyKind::Yellow}, {18, SupplyKind::Cyan}};
  for (const auto& [color, kind] : rows) {
    SupplyColumns columns = OneToner();
    columns.colors = {color};
    EXPECT_EQ(OnlyEntry(columns).kind, kind) << color;
  }
  for (const std::int32_t color : {0, 1, 14, 19, -15}) {
    SupplyColumns columns = OneToner();
    columns.colors = {color};
    EXPECT_EQ(OnlyEntry(columns).kind, SupplyKind::Unit) << color;
    EXPECT_EQ(NotesOf(columns), "/unknown color");
  }
}

TEST(ReadSupplies, Levels) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  struct Row {
    std::int32_t level;
    std::int32_t maximum;
    const char* percent;  // null: no level
  };
  const Row rows[] = {
      {40, 200, "20"},     {199, 200, "99"},  {200, 200, "100"}, {202, 200, nullptr},
      {-3, -2, "-3"},                       // the Printer MIB's "some left", "unknown"
      {-2, 200, "-2"},     {60, -2, "60"},  // no maximum to compute with
      {60, 0, "60"},       {101, 0, nullptr}, {0, 200, "0"},     {kMost, 1, "-100"},  // the product wraps
      {kMost, kMost, "0"},
  };
  for (const Row& row : rows) {
    SupplyColumns columns = OneToner();
    columns.levels = {row.level};
    columns.maxima = {row.maximum};
    const SupplyEntry entry = OnlyEntry(columns);
    const auto level = entry.attributes.find(Level);
    ASSERT_EQ(level != entry.attributes.end(), row.percent != nullptr) << row.level << " of " << row.maximum;
    if (row.percent) {
      EXPECT_EQ(level->second, row.percent) << row.level << " of " << row.maximum;
    }
    EXPECT_EQ(NotesOf(columns), row.percent ? "" : "/invalid level");
  }
}

TEST(ReadSupplies, OnlyTonerRowsCount) {
  SupplyColumns columns;
  columns.types = {9, 3, 3};  // a drum first
  columns.maxima = {100, 100, 100};
  columns.levels = {1, 2, 3};
  columns.colors = {15, 18, 15};
  columns.vendors = {"a", "b", "c"};
  columns.serials = {"x", "y", "z"};
  columns.dates = {"", "", "07E80301"};
  columns.suppliers = {"p", "q"};  // shorter than the table
  std::string notes;
  const std::vector<SupplyEntry> entries = ReadSupplies(columns, notes);
  const std::vector<SupplyEntry> expected = {
      {SupplyKind::Cyan, {{VendorName, "b"}, {SupplierID, "q"}, {SerialNumber, "y"}, {Level, "2"}}},
      {SupplyKind::Black, {{VendorName, "c"}, {SerialNumber, "z"}, {InstalledDate, "2024-03-01"}, {Level, "3"}}}};
  EXPECT_EQ(entries, expected);
  EXPECT_EQ(notes, "/modelid missing/no instdate/modelid missing");
}

TEST(ReadSupplies, RowsThatOneTableLacksAreLeftOut) {
  SupplyColumns columns = OneToner();
  columns.types = {3, 3};
  columns.maxima = {200, 200};
  columns.levels = {1, 1};
  EXPECT_EQ(OnlyEntry(columns).kind, SupplyKind::Black);
}

TEST(ReadSupplies, NoTonerIsNoted) {
  SupplyColumns columns = OneToner();
  columns.types = {4};
  EXPECT_EQ(NotesOf(columns), "/no toner pub");
}

TEST(SupplyTables, ColumnsMustMatch) {
  EXPECT_TRUE(HasPublicTable(OneToner()));
  EXPECT_TRUE(HasPrivateTable(OneToner()));
  EXPECT_FALSE(HasPublicTable({}));
  EXPECT_FALSE(HasPrivateTable({}));

  for (std::vector<std::int32_t> SupplyColumns::*column : {&SupplyColumns::maxima, &SupplyColumns::levels}) {
    SupplyColumns columns = OneToner();
    (columns.*column).push_back(0);
    EXPECT_FALSE(HasPublicTable(columns));
  }
  for (std::vector<std::string> SupplyColumns::*column :
       {&SupplyColumns::vendors, &SupplyColumns::serials, &SupplyColumns::dates}) {
    SupplyColumns columns = OneToner();
    (columns.*column).clear();
    EXPECT_FALSE(HasPrivateTable(columns));
  }
  SupplyColumns columns = OneToner();
  columns.suppliers.clear();
  columns.models.clear();
  EXPECT_TRUE(HasPrivateTable(columns));
}

TEST(ConvertDate, Table) {
  struct Row {
    std::string_view value;
    const char* date;  // null: no date
  };
  const Row rows[] = {
      {"07E8030F", "2024-03-15"},
      {"07e8030f", "2024-03-15"},
      {"07E8030F0A1E00002B0900", "2024-03-15"},  // time and zone follow
      {"07E8030Fxyz", "2024-03-15"},
      {"00010203", "0001-02-03"},
      {"FFFFFFFF", "65535-255-255"},
      {"07E8030", nullptr},
      {"", nullptr},
      {"07E8-3-F", nullptr},
      {"2024-03-15", nullptr},
      {"+7E8030F", nullptr},
      {" 7E8030F", nullptr},
      {"0x070x0F", nullptr},
      // A DateAndTime (RFC 2579) as bytes.
      {std::string_view("\x07\xE8\x03\x0F\x0A\x1E\x00\x00", 8), "2024-03-15"},
      {std::string_view("\x07\xDA\x0C\x1F", 4), "2010-12-31"},
      {std::string_view("\x07\xDA\x0C", 3), nullptr},
      {std::string_view("\x00\x00\x00\x00", 4), "0000-00-00"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(ConvertDate(row.value), row.date ? std::optional<std::string>(row.date) : std::nullopt) << row.value;
  }
}

}  // namespace
}  // namespace zt
