#include "BerReader.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace ztsnmp {

bool BerReader::skipExactly(std::span<const std::uint8_t> expected) noexcept {
  BerReader ahead = *this;
  const auto bytes = ahead.take(expected.size());
  if (!bytes || !std::equal(expected.begin(), expected.end(), bytes->begin())) return false;
  *this = ahead;
  return true;
}

std::optional<std::size_t> BerReader::takeLongLength(std::size_t bytes) noexcept {
  // X.690, 8.1.3.5; its minimal use is not required. No bytes at all are the indefinite form (8.1.3.6), which SNMP does
  // not know; four of them name more than any datagram holds.
  if (bytes == 0 || bytes > 4) return std::nullopt;
  const auto taken = take(bytes);
  if (!taken) return std::nullopt;
  std::size_t length = 0;
  for (std::uint8_t byte : *taken) length = length << 8 | byte;
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
  // taken as negative, on purpose: a lone 80 reads as 4294967168.
  std::uint32_t value = bytes.front() & 0x80 ? ~0U : 0U;
  for (std::uint8_t byte : bytes) value = value << 8 | byte;
  return value;
}

std::optional<std::size_t> readObjectIdentifier(BerReader content, OidText& text) noexcept {
  const auto first = content.takeByte();
  if (!first) return std::nullopt;
  char* next = text.data();
  char* const end = next + text.size() - 1;
  // X.690, 8.19.4 joins the first two arcs as 40 * first + second. One byte is all that is looked at, and 40 is divided
  // out of numbers above 119 too.
  *next++ = static_cast<char>('0' + *first / 40);
  *next++ = '.';
  next = std::to_chars(next, end, *first % 40).ptr;

  // X.690, 8.19.2: base 128, high bit set on all bytes of a number but the last. A leading 80 is let pass.
  // Texts have always been made with "%d": an arc above 2147483647 would come out negative, which no OID takes.
  // There may be 255 arcs; the text ends before that.
  constexpr std::uint32_t kMaxArc = std::numeric_limits<std::int32_t>::max();
  std::uint32_t arc = 0;
  bool complete = true;
  for (std::uint8_t byte : content.takeRest()) {
    if (arc > kMaxArc >> 7) return std::nullopt;
    arc = arc << 7 | (byte & 0x7FU);
    complete = byte < 0x80;
    if (!complete) continue;
    if (end - next < 2) return std::nullopt;
    *next++ = '.';
    if (arc < 10) {  // as most are
      *next++ = static_cast<char>('0' + arc);
    } else {
      const auto [behind, error] = std::to_chars(next, end, arc);
      if (error != std::errc()) return std::nullopt;
      next = behind;
    }
    arc = 0;
  }
  if (!complete) return std::nullopt;
  *next = '\0';
  return static_cast<std::size_t>(next - text.data());
}

}  // namespace ztsnmp
