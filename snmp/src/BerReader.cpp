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

namespace {

constexpr std::size_t kMaxArcs = 255;

/// Puts dotted numbers one after the other into a text of fixed size.
class DottedText {
 public:
  explicit DottedText(OidText& text) noexcept : begin_(text.data()), next_(begin_), end_(begin_ + text.size() - 1) {}

  /// false when the text is full.
  [[nodiscard]] bool append(std::uint32_t arc) noexcept {
    if (end_ - next_ < 2) return false;  // room for the dot and one digit
    *next_ = '.';
    next_ += next_ != begin_ ? 1 : 0;
    if (arc < 10) {  // as most are
      *next_++ = static_cast<char>('0' + arc);
      return true;
    }
    const auto [next, error] = std::to_chars(next_, end_, arc);
    next_ = next;
    return error == std::errc();
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

}  // namespace

std::optional<std::size_t> readObjectIdentifier(BerReader content, OidText& text) noexcept {
  const auto first = content.takeByte();
  if (!first) return std::nullopt;
  // X.690, 8.19.4 joins the first two arcs as 40 * first + second. One byte is all that is looked at, and 40 is divided
  // out of numbers above 119 too.
  DottedText dotted(text);
  std::size_t arcs = 2;
  if (!dotted.append(*first / 40U) || !dotted.append(*first % 40U)) return std::nullopt;

  // X.690, 8.19.2: base 128, high bit set on all bytes of a number but the last. A leading 80 is let pass.
  // Texts have always been made with "%d": an arc above 2147483647 would come out negative, which no OID takes.
  constexpr std::uint32_t kMaxArc = std::numeric_limits<std::int32_t>::max();
  std::uint32_t arc = 0;
  bool complete = true;
  for (std::uint8_t byte : content.takeRest()) {
    if (arc > kMaxArc >> 7) return std::nullopt;
    arc = arc << 7 | (byte & 0x7FU);
    complete = byte < 0x80;
    if (!complete) continue;
    if (++arcs > kMaxArcs || !dotted.append(arc)) return std::nullopt;
    arc = 0;
  }
  if (!complete) return std::nullopt;
  return dotted.finish();
}

}  // namespace ztsnmp
