#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>

namespace ztsnmp {

/// BerReader walks over received bytes (X.690, basic encoding rules). Only its operations, which check the bounds, look
/// at a byte; the content of an element is read by a reader of its own that cannot leave it. A read that fails leaves
/// the cursor where it was. What runs for each element stands in this header, to be compiled into its users.
class BerReader {
 public:
  struct Element;

  explicit BerReader(std::span<const std::uint8_t> bytes) noexcept : rest_(bytes) {}

  [[nodiscard]] std::size_t remaining() const noexcept { return rest_.size(); }

  /// takeRest answers all bytes that are left.
  [[nodiscard]] std::span<const std::uint8_t> takeRest() noexcept { return std::exchange(rest_, {}); }

  /// take answers the next `count` bytes.
  [[nodiscard]] std::optional<std::span<const std::uint8_t>> take(std::size_t count) noexcept {
    if (count > rest_.size()) return std::nullopt;
    const auto taken = rest_.first(count);
    rest_ = rest_.subspan(count);
    return taken;
  }

  [[nodiscard]] std::optional<std::uint8_t> takeByte() noexcept {
    const auto taken = take(1);
    if (!taken) return std::nullopt;
    return taken->front();
  }

  /// skipExactly passes over the expected bytes; false when others stand there.
  [[nodiscard]] bool skipExactly(std::span<const std::uint8_t> expected) noexcept {
    BerReader ahead = *this;
    const auto bytes = ahead.take(expected.size());
    if (!bytes || !std::equal(expected.begin(), expected.end(), bytes->begin())) return false;
    *this = ahead;
    return true;
  }

  /// takeElement answers the next element, whatever its tag.
  [[nodiscard]] std::optional<Element> takeElement() noexcept;

  /// enter answers the content of the next element when that has the tag.
  [[nodiscard]] std::optional<BerReader> enter(std::uint8_t tag) noexcept;

 private:
  /// readLongLength reads the bytes of a length in long form.
  [[nodiscard]] static std::optional<std::size_t> readLongLength(std::span<const std::uint8_t> bytes) noexcept;

  std::span<const std::uint8_t> rest_;
};

struct BerReader::Element {
  std::uint8_t tag;
  BerReader content;
};

inline std::optional<BerReader::Element> BerReader::takeElement() noexcept {
  if (rest_.size() < 2) return std::nullopt;
  const std::uint8_t tag = rest_[0];
  std::size_t length = rest_[1];  // X.690, 8.1.3.4: short form
  BerReader ahead(rest_.subspan(2));
  if (length >= 0x80) {  // X.690, 8.1.3.5: long form
    const auto lengthBytes = ahead.take(length & 0x7F);
    const auto longLength = lengthBytes ? readLongLength(*lengthBytes) : std::nullopt;
    if (!longLength) return std::nullopt;
    length = *longLength;
  }
  const auto content = ahead.take(length);
  if (!content) return std::nullopt;
  *this = ahead;
  return Element{tag, BerReader(*content)};
}

inline std::optional<BerReader> BerReader::enter(std::uint8_t tag) noexcept {
  if (rest_.empty() || rest_.front() != tag) return std::nullopt;
  const auto element = takeElement();
  if (!element) return std::nullopt;
  return element->content;
}

/// readInteger reads the content of an INTEGER: 1 to 4 bytes, sign-extended.
[[nodiscard]] std::optional<std::int32_t> readInteger(BerReader content) noexcept;

/// readUnsigned reads the content of a Counter, Gauge or TimeTicks: 1 to 4 bytes, or 5 of which the first is 00.
[[nodiscard]] std::optional<std::uint32_t> readUnsigned(BerReader content) noexcept;

}  // namespace ztsnmp
