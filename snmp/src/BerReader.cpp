#include "BerReader.h"

namespace ztsnmp {

std::optional<std::size_t> BerReader::readLongLength(std::span<const std::uint8_t> bytes) noexcept {
  // The minimal use of X.690, 8.1.3.5 is not required. No bytes at all are the indefinite form (8.1.3.6), which SNMP
  // does not know; four of them name more than any datagram holds.
  if (bytes.empty() || bytes.size() > 4) return std::nullopt;
  std::size_t length = 0;
  for (std::uint8_t byte : bytes) length = length << 8 | byte;
  return length;
}

std::optional<std::int32_t> readInteger(BerReader content) noexcept {
  // X.690, 8.3.1 asks for one byte at least; more than four leave 32 bits. Needless leading bytes (8.3.2) are let pass:
  // agents send them.
  const auto bytes = content.takeRest();
  if (bytes.empty() || bytes.size() > 4) return std::nullopt;
  std::uint32_t value = bytes.front() & 0x80 ? ~0U : 0U;
  for (std::uint8_t byte : bytes) value = value << 8 | byte;
  return static_cast<std::int32_t>(value);
}

std::optional<std::uint32_t> readUnsigned(BerReader content) noexcept {
  const auto bytes = content.takeRest();
  if (bytes.empty() || bytes.size() > 5) return std::nullopt;
  if (bytes.size() == 5 && bytes.front() != 0) return std::nullopt;
  // An unsigned number whose first bit is set is written with a leading 00 (X.690, 8.3.3). Without it the number is
  // taken as negative, on purpose: a lone 80 reads as 4294967168. Agents that leave out the 00 hold their counters in
  // signed variables, and have shortened FFFFFF80 as the negative number that it is to them.
  std::uint32_t value = bytes.front() & 0x80 ? ~0U : 0U;
  for (std::uint8_t byte : bytes) value = value << 8 | byte;
  return value;
}

}  // namespace ztsnmp
