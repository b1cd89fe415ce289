#include "SupplyReading.h"

#include <array>
#include <charconv>

#include "Hex.h"

namespace zt {
namespace {

constexpr std::int64_t kToner = 3;  // RFC 3805, PrtMarkerSuppliesTypeTC

std::optional<SupplyKind> KindOfColor(std::int64_t color) {
  switch (color) {
    case 15:
      return SupplyKind::Black;
    case 16:
      return SupplyKind::Magenta;
    case 17:
      return SupplyKind::Yellow;
    case 18:
      return SupplyKind::Cyan;
    default:
      return std::nullopt;
  }
}

// PercentOf computes in 32-bit arithmetic that wraps, as printers' own tools do. Where there is nothing to compute the
// level passes through, and with it the negative codes of the Printer MIB.
std::int32_t PercentOf(std::int32_t level, std::int32_t maximum) {
  if (maximum <= 0 || level < 0) return level;
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(level) * 100u) / maximum;
}

std::string ToHexText(std::string_view bytes) {
  std::string text;
  for (const char character : bytes) AppendHex(text, static_cast<std::uint8_t>(character));
  return text;
}

std::string Padded(unsigned number, std::size_t width) {
  std::string text = std::to_string(number);
  if (text.size() < width) text.insert(0, width - text.size(), '0');
  return text;
}

}  // namespace

bool HasPublicTable(const SupplyColumns& columns) {
  const std::size_t rows = columns.types.size();
  return rows > 0 && columns.maxima.size() == rows && columns.levels.size() == rows;
}

bool HasPrivateTable(const SupplyColumns& columns) {
  const std::size_t rows = columns.colors.size();
  return rows > 0 && columns.vendors.size() == rows && columns.serials.size() == rows && columns.dates.size() == rows;
}

std::vector<SupplyEntry> ReadSupplies(const SupplyColumns& columns, Codes& codes) {
  std::vector<SupplyEntry> supplies;
  bool anyToner = false;
  for (std::size_t row = 0; row < columns.types.size() && row < columns.colors.size(); ++row) {
    if (columns.types[row] != kToner) continue;
    anyToner = true;
    const std::optional<SupplyKind> kind = KindOfColor(columns.colors[row]);
    if (!kind) {
      codes.Add("/unknown color");
      continue;
    }

    SupplyEntry entry{*kind, {}};
    const std::int32_t percent =
        PercentOf(static_cast<std::int32_t>(columns.levels[row]), static_cast<std::int32_t>(columns.maxima[row]));
    if (percent <= 100) {
      entry.attributes[SupplyAttribute::Level] = std::to_string(percent);
    } else {
      codes.Add("/invalid level");
    }
    entry.attributes[SupplyAttribute::VendorName] = columns.vendors[row];
    if (row < columns.suppliers.size()) entry.attributes[SupplyAttribute::SupplierID] = columns.suppliers[row];
    if (row < columns.models.size()) {
      entry.attributes[SupplyAttribute::ModelID] = columns.models[row];
    } else {
      codes.Add("/modelid missing");
    }
    entry.attributes[SupplyAttribute::SerialNumber] = columns.serials[row];
    if (std::optional<std::string> date = ConvertDate(columns.dates[row])) {
      entry.attributes[SupplyAttribute::InstalledDate] = *std::move(date);
    } else {
      codes.Add(columns.dates[row].empty() ? "/no instdate" : "/invalid instdate");
    }
    supplies.push_back(std::move(entry));
  }
  if (!anyToner) codes.Add("/no toner pub");
  return supplies;
}

std::optional<std::string> ConvertDate(std::string_view value) {
  // The first byte of a year stands far below the characters of a text.
  std::string bytesAsText;
  if (!value.empty() && static_cast<unsigned char>(value.front()) < 0x20) {
    bytesAsText = ToHexText(value);
    value = bytesAsText;
  }
  if (value.size() < 8) return std::nullopt;

  struct Part {
    std::size_t begin;
    std::size_t width;
  };
  std::array<unsigned, 3> numbers{};
  std::size_t next = 0;
  for (const Part part : {Part{0, 4}, Part{4, 2}, Part{6, 2}}) {
    const char* const begin = value.data() + part.begin;
    const auto [stop, error] = std::from_chars(begin, begin + part.width, numbers[next++], 16);
    if (error != std::errc{} || stop != begin + part.width) return std::nullopt;
  }
  return Padded(numbers[0], 4) + '-' + Padded(numbers[1], 2) + '-' + Padded(numbers[2], 2);
}

}  // namespace zt
