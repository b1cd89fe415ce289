#include "SupplyReading.h"

#include <gtest/gtest.h>

#include <limits>

namespace zt {
namespace {

// One black toner, half full.
SupplyColumns OneToner() {
  return {.types = {3},
          .maxima = {200},
          .levels = {100},
          .colors = {15},
          .vendors = {"Velnora"},
          .suppliers = {"VLN"},
          .models = {"T-1"},
          .serials = {"S1"},
          .dates = {"07E8030F"}};
}

// Reads the columns and answers, of each entry, its kind and its attributes, and behind all of them the codes.
std::string Read(const SupplyColumns& columns) {
  Codes codes;
  std::string text;
  for (const SupplyEntry& entry : ReadSupplies(columns, codes)) {
    text += std::to_string(static_cast<int>(entry.kind));
    for (const auto& [attribute, value] : entry.attributes) {
      text += " " + std::to_string(static_cast<int>(attribute)) + "=" + value;
    }
    text += "; ";
  }
  return text + codes.Text();
}

TEST(ReadSupplies, Table) {
  const struct {
    const char* result;
    void (*change)(SupplyColumns& columns);
  } rows[] = {
      {"4 3=Velnora 4=T-1 5=VLN 6=S1 7=2024-03-15 8=50; ", [](auto&) {}},
      {"2 3=Velnora 4=T-1 5=VLN 6=S1 7=2024-03-15 8=50; ", [](auto& columns) { columns.colors = {16}; }},
      {"3 3=Velnora 4=T-1 5=VLN 6=S1 7=2024-03-15 8=50; ", [](auto& columns) { columns.colors = {17}; }},
      {"1 3=Velnora 4=T-1 5=VLN 6=S1 7=2024-03-15 8=50; ", [](auto& columns) { columns.colors = {18}; }},
      {"/unknown color", [](auto& columns) { columns.colors = {14}; }},
      {"/unknown color", [](auto& columns) { columns.colors = {19}; }},
      {"/no toner pub", [](auto& columns) { columns.types = {4}; }},
      {"4 3=Velnora 4=T-1 6=S1 7=2024-03-15 8=50; ", [](auto& columns) { columns.suppliers.clear(); }},
      {"4 3=Velnora 5=VLN 6=S1 7=2024-03-15 8=50; /modelid missing", [](auto& columns) { columns.models.clear(); }},
      {"4 3=Velnora 4=T-1 5=VLN 6=S1 8=50; /no instdate", [](auto& columns) { columns.dates = {""}; }},
      {"4 3=Velnora 4=T-1 5=VLN 6=S1 8=50; /invalid instdate", [](auto& columns) { columns.dates = {"soon"}; }},
      // A row that the maker's table lacks.
      {"4 3=Velnora 4=T-1 5=VLN 6=S1 7=2024-03-15 8=50; ",
       [](auto& columns) {
         columns.types = {3, 3}, columns.maxima = {200, 200}, columns.levels = {100, 100};
       }},
  };
  for (const auto& row : rows) {
    SupplyColumns columns = OneToner();
    row.change(columns);
    EXPECT_EQ(Read(columns), row.result);
  }
}

TEST(ReadSupplies, Levels) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  const struct {
    std::int32_t level;
    std::int32_t maximum;
    const char* percent;  // null: no level
  } rows[] = {
      {40, 200, "20"},     {199, 200, "99"},  {200, 200, "100"}, {202, 200, nullptr},
      {-3, -2, "-3"},                       // the Printer MIB's "some left", "unknown"
      {-2, 200, "-2"},     {60, -2, "60"},  // no maximum to compute with
      {60, 0, "60"},       {101, 0, nullptr}, {0, 200, "0"},     {kMost, 1, "-100"},  // the product wraps
      {kMost, kMost, "0"},
  };
  for (const auto& row : rows) {
    SupplyColumns columns = OneToner();
    columns.levels = {row.level};
    columns.maxima = {row.maximum};
    const std::string level = row.percent ? std::string(" 8=") + row.percent + "; " : "; /invalid level";
    EXPECT_EQ(Read(columns), "4 3=Velnora 4=T-1 5=VLN 6=S1 7=2024-03-15" + level) << row.level << " of " << row.maximum;
  }
}

TEST(ReadSupplies, RowsOfBothTablesBelongTogetherByPosition) {
  SupplyColumns columns;
  columns.types = {9, 3, 3};  // a drum first
  columns.maxima = {100, 100, 100};
  columns.levels = {1, 2, 3};
  columns.colors = {15, 18, 15};
  columns.vendors = {"a", "b", "c"};
  columns.serials = {"x", "y", "z"};
  columns.dates = {"", "", "07E80301"};
  columns.suppliers = {"p", "q"};  // shorter than the table
  EXPECT_EQ(Read(columns),
            "1 3=b 5=q 6=y 8=2; 4 3=c 6=z 7=2024-03-01 8=3; /modelid missing/no instdate/modelid missing");
}

TEST(SupplyTables, ColumnsMustMatch) {
  const struct {
    bool isPublic;
    bool isPrivate;
    void (*change)(SupplyColumns& columns);
  } rows[] = {
      {true, true, [](auto&) {}},
      {false, false, [](auto& columns) { columns = {}; }},
      {false, true, [](auto& columns) { columns.types.push_back(3); }},
      {false, true, [](auto& columns) { columns.maxima.push_back(0); }},
      {false, true, [](auto& columns) { columns.levels.push_back(0); }},
      {true, false, [](auto& columns) { columns.colors.push_back(15); }},
      {true, false, [](auto& columns) { columns.vendors.clear(); }},
      {true, false, [](auto& columns) { columns.serials.clear(); }},
      {true, false, [](auto& columns) { columns.dates.clear(); }},
      {true, true, [](auto& columns) { columns.suppliers.clear(), columns.models.clear(); }},
  };
  for (const auto& row : rows) {
    SupplyColumns columns = OneToner();
    row.change(columns);
    EXPECT_EQ(HasPublicTable(columns), row.isPublic) << &row - rows;
    EXPECT_EQ(HasPrivateTable(columns), row.isPrivate) << &row - rows;
  }
}

TEST(ConvertDate, Table) {
  const std::pair<std::string_view, const char*> rows[] = {
      // null: no date
      {"07E8030F", "2024-03-15"},
      {"07e8030f", "2024-03-15"},
      {"07E8030F0A1E00002B0900", "2024-03-15"},  // time and zone follow
      {"00010203", "0001-02-03"},
      {"FFFFFFFF", "65535-255-255"},
      {"07E8030", nullptr},
      {"07E8-3-F", nullptr},
      {"2024-03-15", nullptr},
      {" 7E8030F", nullptr},
      {"0x070x0F", nullptr},
      // A DateAndTime (RFC 2579) as bytes.
      {std::string_view("\x07\xE8\x03\x0F\x0A\x1E\x00\x00", 8), "2024-03-15"},
      {std::string_view("\x07\xDA\x0C", 3), nullptr},
      {std::string_view("\x00\x00\x00\x00", 4), "0000-00-00"},
  };
  for (const auto& [value, date] : rows) {
    EXPECT_EQ(ConvertDate(value), date ? std::optional<std::string>(date) : std::nullopt) << value;
  }
}

}  // namespace
}  // namespace zt
