#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

namespace ztsnmp {

/// BerWriter writes a message from its end to its start, so that each length is known when its turn comes and nothing
/// is written twice. Write the last element first; put the header of a constructed element in front when its content
/// stands.
///
/// Every byte goes through `claim`. Once the room was used up the writer has failed for good. `bytes` is compiled into
/// its users, as most of what it writes are two or three bytes of a number known there.
class BerWriter {
 public:
  /// The buffer outlives the writer.
  explicit BerWriter(std::span<std::uint8_t> buffer) noexcept : buffer_(buffer), free_(buffer.size()) {}

  /// mark answers how many bytes are written.
  [[nodiscard]] std::size_t mark() const noexcept { return buffer_.size() - free_; }

  /// rewind takes back all that was written since the mark.
  void rewind(std::size_t mark) noexcept { free_ = buffer_.size() - mark; }

  /// written answers what was written, in the buffer's last bytes.
  [[nodiscard]] std::span<const std::uint8_t> written() const noexcept { return buffer_.subspan(free_); }
  [[nodiscard]] bool failed() const noexcept { return failed_; }

  void byte(std::uint8_t value) noexcept { bytes({&value, 1}); }
  void bytes(std::span<const std::uint8_t> values) noexcept {
    const auto room = claim(values.size());
    if (room.size() == values.size()) std::copy(values.begin(), values.end(), room.begin());
  }

  /// header writes tag and length of the element whose content is all that was written since the mark.
  void header(std::uint8_t tag, std::size_t contentMark) noexcept;

  /// octets, integer, unsignedNumber and null write one whole element.
  void octets(std::uint8_t tag, std::span<const std::uint8_t> content) noexcept;
  void integer(std::int32_t value) noexcept;
  void unsignedNumber(std::uint8_t tag, std::uint32_t value) noexcept;
  void null() noexcept;

 private:
  [[nodiscard]] std::span<std::uint8_t> claim(std::size_t count) noexcept {
    if (count > free_) {
      failed_ = true;
      return {};
    }
    free_ -= count;
    return buffer_.subspan(free_, count);
  }

  std::span<std::uint8_t> buffer_;
  std::size_t free_;
  bool failed_ = false;
};

}  // namespace ztsnmp
