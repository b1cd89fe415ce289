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
  if (bytes.empty()) return std::nullopt;
  const std::uint8_t first = bytes.front();
  char* next = text.data();
  char* const end = next + text.size() - 1;
  // X.690, 8.19.4 joins the first two arcs as 40 * first + second. One byte is all that is looked at, and 40 is divided
  // out of numbers above 119 too.
  *next++ = static_cast<char>('0' + first / 40);
  *next++ = '.';
  next = std::to_chars(next, end, first % 40).ptr;

  // X.690, 8.19.2: base 128, high bit set on all bytes of a number but the last. A leading 80 is let pass.
  // Texts have always been made with "%d": an arc above 2147483647 would come out negative, which no OID takes.
  // There may be 255 arcs; the text ends before that.
  constexpr std::uint32_t kMaxArc = std::numeric_limits<std::int32_t>::max();
  bool minimal = true;
  for (auto byte = bytes.begin() + 1; byte != bytes.end(); ++byte) {
    if (next >= end - 1) return std::nullopt;  // a dot and a digit
    *next++ = '.';
    if (*byte < 10) {  // as most are
      *next++ = static_cast<char>('0' + *byte);
      continue;
    }
    if (*byte == 0x80) minimal = false;
    std::uint32_t arc = 0;
    while (*byte >= 0x80) {
      arc = arc << 7 | (*byte & 0x7FU);
      if (arc > kMaxArc >> 7 || ++byte == bytes.end()) return std::nullopt;
    }
    const auto [behind, error] = std::to_chars(next, end, arc << 7 | *byte);
    if (error != std::errc()) return std::nullopt;
    next = behind;
  }
  return Rendered{static_cast<std::size_t>(next - text.data()), minimal};
}

}  // namespace

OID::KeptEncoding OIDCodec::keep(Encoding bytes) noexcept {
  OID::KeptEncoding kept;
  if (bytes.size() > kept.bytes.size()) return kept;
  kept.size = static_cast<std::uint8_t>(bytes.size());
  std::copy(bytes.begin(), bytes.end(), kept.bytes.begin());
  return kept;
}

Encoding OIDCodec::keptIn(const OID& oid) noexcept { return Encoding(oid.encoding_.bytes).first(oid.encoding_.size); }

OID::KeptEncoding OIDCodec::encodingOf(const char* dotted) noexcept {
  EncodingBuffer buffer;
  const auto bytes = encode(dotted, buffer);
  if (!bytes) return {};
  TextBuffer text;
  const auto rendered = render(*bytes, text);
  const bool readsTheSame = rendered && std::string_view(text.data(), rendered->length) == dotted;
  return readsTheSame ? keep(*bytes) : OID::KeptEncoding();
}

bool OIDCodec::write(BerWriter& writer, const OID& oid) noexcept {
  EncodingBuffer buffer;
  const Encoding kept = keptIn(oid);
  const auto bytes = kept.empty() ? encode(oid.getValue(), buffer) : kept;
  if (bytes) writer.octets(kTag, *bytes);
  return bytes.has_value();
}

bool OIDCodec::read(BerReader content, OID& oid) {
  const Encoding bytes = content.takeRest();
  // The answer to a get repeats the names that were asked for.
  if (!bytes.empty() && std::ranges::equal(bytes, keptIn(oid))) return true;
  TextBuffer text;
  const auto rendered = render(bytes, text);
  if (!rendered) return false;
  oid.text_.assign(text.data(), rendered->length);
  oid.encoding_ = rendered->minimal ? keep(bytes) : OID::KeptEncoding();
  return true;
}

}  // namespace ztsnmp
