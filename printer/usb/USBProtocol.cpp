#include "USBProtocol.h"

#include <algorithm>

namespace zt {
namespace {

std::uint32_t BigEndianAt(std::span<const std::uint8_t> bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (const std::uint8_t byte : bytes.subspan(at, 4)) number = number << 8 | byte;
  return number;
}

}  // namespace

bool IsAsleep(const USBStatus& status) { return status[1] == 0xAA && status[2] == 0xAA && status[3] == 0xAA; }

std::vector<SupplyEntry> SuppliesOfStatus(const USBStatus& status, ModelFamily family) {
  const auto entryAt = [&status](SupplyKind kind, std::size_t at) {
    return SupplyEntry{kind, {{SupplyAttribute::Level, std::to_string(status[at])}}};
  };
  // Byte 4 has the first colour code in every family.
  std::vector<SupplyEntry> supplies = {entryAt(SupplyKind::Cyan, 4)};
  if (family == ModelFamily::PHT || family == ModelFamily::PHZ) {
    supplies.push_back(entryAt(SupplyKind::Black, 5));
    supplies.push_back(entryAt(SupplyKind::Magenta, 6));
    supplies.push_back(entryAt(SupplyKind::Yellow, 7));
  }
  return supplies;
}

std::optional<USBPageCounters> ReadCounterBlock(std::span<const std::uint8_t> block) {
  if (block.size() < 20) return std::nullopt;
  USBPageCounters counters{0, BigEndianAt(block, 0)};
  for (const std::size_t at : {4u, 8u, 12u, 16u}) counters.largest = std::max(counters.largest, BigEndianAt(block, at));
  return counters;
}

std::string ReadFirmwareVersion(std::string_view text) {
  constexpr std::string_view kMarker = "Main Firmware Version@";
  const std::size_t marker = text.find(kMarker);
  if (marker == std::string_view::npos) return std::string(text);

  // Both offsets below count as if the marker were still there, on purpose: behind a version of less than 22 characters
  // the result goes on with what follows the version.
  text.remove_prefix(marker + kMarker.size());
  const std::size_t end = text.find(';', marker + kMarker.size());
  if (end != std::string_view::npos) return std::string(text.substr(0, end));
  return std::string(text.substr(std::min(marker, text.size())));
}

std::string TextOfReply(std::span<const std::uint8_t> reply) {
  return std::string(reply.begin(), std::find(reply.begin(), reply.end(), std::uint8_t{0}));
}

std::uint32_t DocumentLength(const USBHeader& reply) { return BigEndianAt(reply, 12); }

}  // namespace zt
