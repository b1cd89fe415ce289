#include "BerReader.h"

#include <algorithm>

namespace ztsnmp {

bool BerReader::skipExactly(std::span<const std::uint8_t> expected) noexcept {
  BerReader ahead = *this;
  const auto bytes = ahead.take(expected.size());
  if (!bytes || !std::equal(expected.begin(), expected.end(), bytes->begin())) return false;
  *this = ahead;
  return true;
}

std::optional<BerReader::Element> BerReader::takeLongElement() noexcept {
  BerReader ahead = *this;
  const auto head = ahead.take(2);
  if (!head) return std::nullopt;
  // X.690, 8.1.3.5; its minimal use is not required. No bytes at all are the indefinite form (8.1.3.6), which SNMP does
  // not know; four of them name more than any datagram holds.
  const std::size_t bytes = (*head)[1] & 0x7F;
  if (bytes == 0 || bytes > 4) return std::nullopt;
  const auto lengthBytes = ahead.take(bytes);
  if (!lengthBytes) return std::nullopt;
  std::size_t length = 0;
  for (std::uint8_t byte : *lengthBytes) length = length << 8 | byte;
  const auto content = ahead.take(length);
  if (!content) return std::nullopt;
  *this = ahead;
  return Element{(*head)[0], BerReader(*content)};
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
