#include "BerWriter.h"

#include <algorithm>
#include <array>
#include <limits>

namespace ztsnmp {

namespace {

constexpr std::uint8_t kTagInteger = 0x02;
constexpr std::uint8_t kTagNull = 0x05;
constexpr std::uint8_t kTagObjectIdentifier = 0x06;

/// The text of an OID has 255 characters at most. One number of 10 digits takes a dot and 5 bytes, one digit a dot and
/// a byte, so no encoding is longer than this.
constexpr std::size_t kMaxEncodedName = 260;

/// Puts the numbers of an OBJECT IDENTIFIER one after the other. false: there is no encoding.
class EncodedName {
 public:
  [[nodiscard]] bool append(std::uint64_t arc) noexcept {
    if (arcs_++ < 2) return appendJoined(arc);
    if (arc < 0x80 && size_ < bytes_.size()) {  // as most are
      bytes_[size_++] = static_cast<std::uint8_t>(arc);
      return true;
    }
    if (size_ + 5 > bytes_.size()) return false;
    // X.690, 8.19.2: base 128, high bit set on all bytes but the last.
    int shift = 0;
    while (arc >> shift >= 0x80) shift += 7;
    for (; shift > 0; shift -= 7) bytes_[size_++] = static_cast<std::uint8_t>(arc >> shift | 0x80);
    bytes_[size_++] = static_cast<std::uint8_t>(arc & 0x7F);
    return true;
  }

  [[nodiscard]] std::size_t arcs() const noexcept { return arcs_; }
  [[nodiscard]] std::span<const std::uint8_t> bytes() const noexcept { return std::span(bytes_).first(size_); }

 private:
  /// The first two arcs share a byte, 40 * first + second (X.690, 8.19.4). What does not fit into one is not encoded at
  /// all, since the reading side looks at one byte.
  [[nodiscard]] bool appendJoined(std::uint64_t arc) noexcept {
    if (arcs_ == 1) {
      joined_ = arc * 40;
      return joined_ <= 0xFF;
    }
    joined_ += arc;
    bytes_[size_++] = static_cast<std::uint8_t>(joined_);
    return joined_ <= 0xFF;
  }

  std::array<std::uint8_t, kMaxEncodedName> bytes_;  // only the first size_ are set
  std::size_t size_ = 0;
  std::size_t arcs_ = 0;
  std::uint64_t joined_ = 0;
};

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
  EncodedName name;
  std::uint64_t arc = 0;
  for (char c : dotted) {
    if (c == '.') {
      if (!name.append(arc)) return false;
      arc = 0;
    } else {
      arc = arc * 10 + static_cast<std::uint64_t>(c - '0');
      if (arc > std::numeric_limits<std::uint32_t>::max()) return false;
    }
  }
  if (!name.append(arc)) return false;
  // There are two arcs at least (X.690, 8.19.4). A missing one counts as 0, so "" goes out as 0.0 and "1" as 1.0, where
  // a walk can start.
  if (name.arcs() == 1 && !name.append(0)) return false;
  octets(kTagObjectIdentifier, name.bytes());
  return true;
}

}  // namespace ztsnmp
