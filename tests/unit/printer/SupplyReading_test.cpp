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
         columns.types = {3, 3};
       }},
      // Another supply first: the rows of both tables belong together by position.
      {"4 3=b 4=T-1 5=VLN 6=S1 7=2024-03-15 8=2; ",
       [](auto& columns) {
         columns.types = {9, 3}, columns.maxima = {100, 100}, columns.levels = {1, 2}, columns.colors = {18, 15};
         for (auto column : {&SupplyColumns::suppliers, &SupplyColumns::models, &SupplyColumns::serials}) {
           (columns.*column).insert((columns.*column).begin(), "other");
         }
         columns.vendors = {"a", "b"}, columns.dates = {"", "07E8030F"};
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
  const std::tuple<std::int32_t, std::int32_t, const char*> rows[] = {
      // level, maximum, percent
      {199, 200, "99"}, {200, 200, "100"},  {202, 200, nullptr},
      {0, 200, "0"},    {-3, -2, "-3"},      // the Printer MIB's "some left", "unknown"
      {-2, 200, "-2"},  {60, -2, "60"},      // no maximum to compute with
      {60, 0, "60"},    {kMost, 1, "-100"},  // the product wraps
  };
  for (const auto& [level, maximum, percent] : rows) {
    SupplyColumns columns = OneToner();
    columns.levels = {level};
    columns.maxima = {maximum};
    const std::string end = percent ? std::string(" 8=") + percent + "; " : "; /invalid level";
    EXPECT_EQ(Read(columns), "4 3=Velnora 4=T-1 5=VLN 6=S1 7=2024-03-15" + end) << level << " of " << maximum;
  }
}

TEST(SupplyTables, ColumnsMustMatch) {
  EXPECT_FALSE(HasPublicTable({}) || HasPrivateTable({}));
  const auto expect = [](bool isPublic, bool isPrivate, auto... column) {
    SupplyColumns columns = OneToner();
    ((columns.*column).clear(), ...);
    EXPECT_EQ(HasPublicTable(columns), isPublic);
    EXPECT_EQ(HasPrivateTable(columns), isPrivate);
  };
  expect(true, true, &SupplyColumns::suppliers, &SupplyColumns::models);
  for (const auto column : {&SupplyColumns::types, &SupplyColumns::maxima, &SupplyColumns::levels}) {
    expect(false, true, column);
  }
  for (const auto column : {&SupplyColumns::vendors, &SupplyColumns::serials, &SupplyColumns::dates}) {
    expect(true, false, column);
  }
}

TEST(ConvertDate, Table) {
  const std::pair<std::string_view, std::optional<std::string>> rows[] = {
      {"07e8030F0A1E00002B0900", "2024-03-15"},  // time and zone follow
      {"00010203", "0001-02-03"},
      {"FFFFFFFF", "65535-255-255"},
      {"07E8030", std::nullopt},
      {"07E8-3-F", std::nullopt},
      {" 7E8030F", std::nullopt},
      {"0x070x0F", std::nullopt},
      // A DateAndTime (RFC 2579) as bytes.
      {std::string_view("\x07\xE8\x03\x0F\x0A\x1E\x00\x00", 8), "2024-03-15"},
      {std::string_view("\x07\xDA\x0C", 3), std::nullopt},
      {std::string_view("\x00\x00\x00\x00", 4), "0000-00-00"},
  };
  for (const auto& [value, date] : rows) EXPECT_EQ(ConvertDate(value), date) << value;
}

}  // namespace
}  // namespace zt
