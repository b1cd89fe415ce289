#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

/// Input hands out the bytes of an input in pieces; zeros and empty texts behind its end.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

  bool empty() const { return rest_.empty(); }

  std::uint8_t byte() {
    if (rest_.empty()) return 0;
    const std::uint8_t first = rest_.front();
    rest_ = rest_.subspan(1);
    return first;
  }

  std::uint32_t number() {
    std::uint32_t value = 0;
    for (int i = byte() % 5; i > 0; --i) value = value << 8 | byte();
    return value;
  }

  /// At most so many bytes.
  std::string text(std::size_t length) {
    const auto front = rest_.first(std::min(length, rest_.size()));
    rest_ = rest_.subspan(front.size());
    return {front.begin(), front.end()};
  }

  /// A text behind a byte with its length.
  std::string text() { return text(byte()); }

  std::string rest() { return text(rest_.size()); }

 private:
  std::span<const std::uint8_t> rest_;
};
