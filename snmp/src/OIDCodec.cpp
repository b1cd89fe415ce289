#include "OIDCodec.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <optional>
#include <string_view>

namespace ztsnmp {

namespace {

using Encoding = std::span<const std::uint8_t>;

/// The text of an OID has 255 characters at most, and each of its numbers takes no more bytes than digits and dot.
using EncodingBuffer = std::array<std::uint8_t, 260>;
using TextBuffer = std::array<char, 256>;

struct Rendered {
  std::size_t length;
  bool minimal;  ///< no number has needless bytes
};

Encoding asBytes(const std::string& bytes) {
  return {static_cast<const std::uint8_t*>(static_cast<const void*>(bytes.data())), bytes.size()};
}

std::string_view asText(Encoding bytes) {
  return {static_cast<const char*>(static_cast<const void*>(bytes.data())), bytes.size()};
}

/// Takes the next number, and the dot behind it, off a text that consists of digits and single dots; 0 at its end, a
/// number above 32 bits for one that is too large.
std::uint64_t takeArc(const char*& dotted) noexcept {
  std::uint64_t arc = 0;
  for (; *dotted >= '0' && arc <= std::numeric_limits<std::uint32_t>::max(); ++dotted) {
    arc = arc * 10 + static_cast<std::uint64_t>(*dotted - '0');
  }
  if (*dotted == '.') ++dotted;
  return arc;
}

/// The content of the element, in the buffer.
std::optional<Encoding> encode(const char* dotted, EncodingBuffer& out) noexcept {
  // X.690, 8.19.4: the first two arcs share a byte, 40 * first + second. What does not fit into one is not encoded at
  // all, since the reading side looks at one byte. Missing arcs count as 0, so "" goes out as 0.0 and "1" as 1.0, where
  // a walk can start.
  const std::uint64_t first = takeArc(dotted);
  const std::uint64_t joined = first * 40 + takeArc(dotted);
  if (joined > 0xFF) return std::nullopt;
  std::size_t size = 0;
  out[size++] = static_cast<std::uint8_t>(joined);

  // X.690, 8.19.2: base 128, high bit set on all bytes but the last.
  constexpr std::size_t kLongestNumber = 5;
  while (*dotted != '\0') {
    const std::uint64_t arc = takeArc(dotted);
    if (arc > std::numeric_limits<std::uint32_t>::max() || size + kLongestNumber > out.size()) return std::nullopt;
    if (arc >= 0x80) {
      int shift = 7;
      while (arc >> shift >= 0x80) shift += 7;
      for (; shift > 0; shift -= 7) out[size++] = static_cast<std::uint8_t>(arc >> shift | 0x80);
    }
    out[size++] = static_cast<std::uint8_t>(arc & 0x7F);
  }
  return Encoding(out).first(size);
}

/// The dotted text of a content, in the buffer.
std::optional<Rendered> render(Encoding bytes, TextBuffer& text) noexcept {
  BerReader content(bytes);
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
  bool minimal = true;
  for (std::uint8_t byte : content.takeRest()) {
    if (arc > kMaxArc >> 7) return std::nullopt;
    arc = arc << 7 | (byte & 0x7FU);
    complete = byte < 0x80;
    if (!complete) {
      minimal = minimal && arc != 0;
      continue;
    }
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
  return Rendered{static_cast<std::size_t>(next - text.data()), minimal};
}

}  // namespace

std::string OIDCodec::encodingOf(const char* dotted) {
  EncodingBuffer buffer;
  const auto bytes = encode(dotted, buffer);
  if (!bytes) return {};
  TextBuffer text;
  const auto rendered = render(*bytes, text);
  const bool readsTheSame = rendered && std::string_view(text.data(), rendered->length) == dotted;
  return std::string(readsTheSame ? asText(*bytes) : std::string_view());
}

bool OIDCodec::write(BerWriter& writer, const OID& oid) noexcept {
  EncodingBuffer buffer;
  const auto bytes = oid.encoding_.empty() ? encode(oid.getValue(), buffer) : asBytes(oid.encoding_);
  if (bytes) writer.octets(kTag, *bytes);
  return bytes.has_value();
}

bool OIDCodec::read(BerReader content, OID& oid) {
  const Encoding bytes = content.takeRest();
  // The answer to a get repeats the names that were asked for.
  if (!bytes.empty() && asText(bytes) == oid.encoding_) return true;
  TextBuffer text;
  const auto rendered = render(bytes, text);
  if (!rendered) return false;
  const std::string_view encoding = rendered->minimal ? asText(bytes) : std::string_view();
  oid.encoding_.reserve(encoding.size());  // From here on the second assignment cannot fail.
  oid.text_.assign(text.data(), rendered->length);
  oid.encoding_.assign(encoding);
  return true;
}

}  // namespace ztsnmp
