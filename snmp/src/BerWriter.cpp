#include "BerWriter.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

namespace ztsnmp {

namespace {

constexpr std::uint8_t kTagInteger = 0x02;
constexpr std::uint8_t kTagNull = 0x05;
constexpr std::uint8_t kTagObjectIdentifier = 0x06;

/// The text of an OID has 255 characters at most, so every other one of them can be a number.
constexpr std::size_t kMaxArcs = 128;

/// The numbers of a dotted text; nullopt when one exceeds 32 bits.
std::optional<std::span<const std::uint32_t>> parseArcs(std::string_view dotted,
                                                        std::array<std::uint32_t, kMaxArcs>& arcs) noexcept {
  std::size_t count = 0;
  std::uint64_t arc = 0;
  for (char c : dotted) {
    if (c == '.') {
      if (count == kMaxArcs - 1) return std::nullopt;
      arcs[count++] = static_cast<std::uint32_t>(arc);
      arc = 0;
      continue;
    }
    arc = arc * 10 + static_cast<std::uint64_t>(c - '0');
    if (arc > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  }
  arcs[count++] = static_cast<std::uint32_t>(arc);
  // An OBJECT IDENTIFIER has two arcs at least (X.690, 8.19.4); missing ones count as 0, so "" goes out as 0.0 and
  // "1" as 1.0, where a walk can start.
  if (count == 1) arcs[count++] = 0;
  return std::span(arcs).first(count);
}

}  // namespace

std::span<std::uint8_t> BerWriter::claim(std::size_t count) noexcept {
  if (failed_ || count > free_) {
    failed_ = true;
    return {};
  }
  free_ -= count;
  return buffer_.subspan(free_, count);
}

void BerWriter::bytes(std::span<const std::uint8_t> values) noexcept {
  const auto room = claim(values.size());
  if (room.size() == values.size()) std::copy(values.begin(), values.end(), room.begin());
}

void BerWriter::header(std::uint8_t tag, std::size_t contentMark) noexcept {
  const std::size_t length = mark() - contentMark;
  if (length < 0x80) {  // X.690, 8.1.3.4: short form
    bytes(std::array{tag, static_cast<std::uint8_t>(length)});
  } else if (length < 0x100) {  // X.690, 8.1.3.5: long form
    bytes(std::array{tag, std::uint8_t{0x81}, static_cast<std::uint8_t>(length)});
  } else {
    bytes(
        std::array{tag, std::uint8_t{0x82}, static_cast<std::uint8_t>(length >> 8), static_cast<std::uint8_t>(length)});
  }
}

void BerWriter::octets(std::uint8_t tag, std::span<const std::uint8_t> content) noexcept {
  const std::size_t start = mark();
  bytes(content);
  header(tag, start);
}

void BerWriter::integer(std::int32_t value) noexcept {
  // X.690, 8.3.2: bytes are dropped as long as the first nine bits stay equal.
  const std::size_t start = mark();
  std::int32_t rest = value;
  do {
    byte(static_cast<std::uint8_t>(rest));
    const bool more = rest > 0x7F || rest < -0x80;
    rest >>= 8;
    if (!more) break;
  } while (true);
  header(kTagInteger, start);
}

void BerWriter::unsignedNumber(std::uint8_t tag, std::uint32_t value) noexcept {
  // A number with its first bit set needs a leading 00 (X.690, 8.3.3), and the shortening of signed numbers follows.
  // From 0xFF800000 upward that drops bytes which count: 0xFFFFFFFF goes out as 00 FF. This is kept on purpose:
  // agents in the field have been set with it.
  constexpr std::uint32_t kTopNineBits = 0xFF800000;
  const bool leadingZero = (value & 0x80000000U) != 0;
  std::size_t length = leadingZero ? 5 : 4;
  std::uint32_t rest = value;
  while (length > 1 && ((rest & kTopNineBits) == 0 || (rest & kTopNineBits) == kTopNineBits)) {
    rest <<= 8;
    --length;
  }
  std::array<std::uint8_t, 5> content{};
  for (std::size_t i = leadingZero ? 1 : 0; i < length; ++i, rest <<= 8) {
    content[i] = static_cast<std::uint8_t>(rest >> 24);
  }
  octets(tag, std::span(content).first(length));
}

void BerWriter::null() noexcept { bytes(std::array{kTagNull, std::uint8_t{0}}); }

bool BerWriter::objectIdentifier(std::string_view dotted) noexcept {
  std::array<std::uint32_t, kMaxArcs> storage;
  const auto arcs = parseArcs(dotted, storage);
  if (!arcs) return false;
  // X.690, 8.19.4: the first two arcs share the first byte, 40 * first + second. What does not fit into one byte is
  // not encoded at all, since the reading side looks at one byte.
  const std::uint64_t joined = std::uint64_t{(*arcs)[0]} * 40 + (*arcs)[1];
  if (joined > 0xFF) return false;

  const std::size_t start = mark();
  for (std::size_t i = arcs->size(); i-- > 2;) {
    // X.690, 8.19.2: base 128, high bit set on all bytes but the last.
    std::uint32_t arc = (*arcs)[i];
    byte(static_cast<std::uint8_t>(arc & 0x7F));
    for (arc >>= 7; arc != 0; arc >>= 7) byte(static_cast<std::uint8_t>(arc | 0x80));
  }
  byte(static_cast<std::uint8_t>(joined));
  header(kTagObjectIdentifier, start);
  return true;
}

}  // namespace ztsnmp
