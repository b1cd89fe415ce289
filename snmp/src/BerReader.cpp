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

std::optional<std::size_t> BerReader::takeLength() noexcept {
  const auto first = takeByte();
  if (!first) return std::nullopt;
  if (*first < 0x80) return *first;  // X.690, 8.1.3.4: short form
  // X.690, 8.1.3.5: long form, its minimal use not required. 0x80 is the indefinite form (8.1.3.6), which SNMP does
  // not know; four bytes name more than any datagram holds.
  const std::size_t count = *first & 0x7F;
  if (count == 0 || count > 4) return std::nullopt;
  const auto bytes = take(count);
  if (!bytes) return std::nullopt;
  std::size_t length = 0;
  for (std::uint8_t byte : *bytes) length = length << 8 | byte;
  return length;
}

std::optional<BerReader::Element> BerReader::takeElement() noexcept {
  BerReader ahead = *this;
  const auto tag = ahead.takeByte();
  if (!tag) return std::nullopt;
  const auto length = ahead.takeLength();
  if (!length) return std::nullopt;
  const auto content = ahead.take(*length);
  if (!content) return std::nullopt;
  *this = ahead;
  return Element{*tag, BerReader(*content)};
}

std::optional<BerReader> BerReader::enter(std::uint8_t tag) noexcept {
  BerReader ahead = *this;
  const auto element = ahead.takeElement();
  if (!element || element->tag != tag) return std::nullopt;
  *this = ahead;
  return element->content;
}

std::optional<std::int32_t> readInteger(BerReader content) noexcept {
  // X.690, 8.3.1 asks for one byte at least; more than four leave 32 bits. Needless leading bytes (8.3.2) are let pass:
  // agents send them.
  const auto bytes = content.take(content.remaining());
  if (!bytes || bytes->empty() || bytes->size() > 4) return std::nullopt;
  std::uint32_t value = bytes->front() & 0x80 ? ~0U : 0U;
  for (std::uint8_t byte : *bytes) value = value << 8 | byte;
  return static_cast<std::int32_t>(value);
}

std::optional<std::uint32_t> readUnsigned(BerReader content) noexcept {
  const auto bytes = content.take(content.remaining());
  if (!bytes || bytes->empty() || bytes->size() > 5) return std::nullopt;
  if (bytes->size() == 5 && bytes->front() != 0) return std::nullopt;
  // An unsigned number whose first bit is set is written with a leading 00 (X.690, 8.3.3). Without it the number is
  // taken as negative, on purpose: a lone 80 reads as 4294967168.
  std::uint32_t value = bytes->front() & 0x80 ? ~0U : 0U;
  for (std::uint8_t byte : *bytes) value = value << 8 | byte;
  return value;
}

namespace {

constexpr std::size_t kMaxArcs = 255;

/// Appends dotted numbers to a text of fixed size.
class DottedText {
 public:
  explicit DottedText(OidText& text) noexcept : begin_(text.data()), next_(begin_), end_(begin_ + text.size() - 1) {}

  [[nodiscard]] bool append(std::uint32_t arc) noexcept {
    // Texts have always been made with "%d". An arc above 2147483647 would come out negative, which no OID takes.
    if (arc > static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max())) return false;
    if (next_ == end_) return false;
    if (next_ != begin_) *next_++ = '.';
    if (arc < 10 && next_ != end_) {
      *next_++ = static_cast<char>('0' + arc);
      return true;
    }
    const auto [next, error] = std::to_chars(next_, end_, arc);
    if (error != std::errc()) return false;
    next_ = next;
    return true;
  }

  [[nodiscard]] std::size_t finish() noexcept {
    *next_ = '\0';
    return static_cast<std::size_t>(next_ - begin_);
  }

 private:
  char* begin_;
  char* next_;
  char* end_;
};

/// One base-128 number, high bit set on all bytes but the last (X.690, 8.19.2; a leading 80 is let pass).
std::optional<std::uint32_t> takeArc(BerReader& content) noexcept {
  std::uint32_t arc = 0;
  for (;;) {
    const auto byte = content.takeByte();
    if (!byte || arc > (std::numeric_limits<std::uint32_t>::max() >> 7)) return std::nullopt;
    arc = arc << 7 | (*byte & 0x7FU);
    if (*byte < 0x80) return arc;
  }
}

}  // namespace

std::optional<std::size_t> readObjectIdentifier(BerReader content, OidText& text) noexcept {
  const auto first = content.takeByte();
  if (!first) return std::nullopt;
  // X.690, 8.19.4 joins the first two arcs as 40 * first + second. One byte is all that is looked at, and 40 is divided
  // out of numbers above 119 too.
  DottedText dotted(text);
  std::size_t arcs = 2;
  if (!dotted.append(*first / 40U) || !dotted.append(*first % 40U)) return std::nullopt;
  while (content.remaining() > 0) {
    const auto arc = takeArc(content);
    if (!arc || ++arcs > kMaxArcs || !dotted.append(*arc)) return std::nullopt;
  }
  return dotted.finish();
}

}  // namespace ztsnmp
