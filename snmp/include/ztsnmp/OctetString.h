#pragma once

#include <cstdint>
#include <string>

#include "SNMPDataType.h"

/// OctetString is an OCTET STRING: up to 1024 bytes of any value, NUL included.
class ZTSNMP_API OctetString : public SNMPDataType {
 public:
  /// kMaxLength is the longest content in bytes.
  static constexpr std::uint64_t kMaxLength = 1024;

  OctetString() noexcept;
  OctetString(const void* data, std::uint64_t length) noexcept;
  OctetString(const OctetString& other);
  OctetString(OctetString&& other) noexcept;
  OctetString& operator=(const OctetString& other);
  OctetString& operator=(OctetString&& other) noexcept;
  ~OctetString() override;

  [[nodiscard]] EnumDataType getDataType() const noexcept override;

  /// toString returns the bytes as a C string: as a reader of C strings sees it, it ends at the first NUL.
  [[nodiscard]] const char* toString() const noexcept override;

  /// isValid always returns 0, for empty content too. What a request may carry is `isValidValue`.
  [[nodiscard]] int isValid() const noexcept override;

  /// setValue copies `length` bytes; 0 is allowed. Null data or more than 1024 bytes are refused with -6.
  int setValue(const void* data, std::uint64_t length) noexcept;

  /// getValue returns the bytes and writes their number to `length`. A NUL that is not counted follows them.
  [[nodiscard]] const unsigned char* getValue(std::uint64_t& length) const noexcept;

  /// isValidValue is the stricter rule that the PDU checks and the encoder apply: -6 for null data or more than 1024
  /// bytes, -58 for no bytes, else 0.
  [[nodiscard]] static int isValidValue(const void* data, std::uint64_t length) noexcept;

  /// toHexString renders two upper-case hexadecimal digits per byte without separators.
  [[nodiscard]] std::string toHexString() const;

  /// toDateAndTimeString renders a DateAndTime (RFC 2579): 8 bytes as "2010-12-31,23:59:59", 11 bytes as
  /// "2010-12-31,23:59:59.9,+09:00". Any other length, or null data, gives the empty text.
  [[nodiscard]] std::string toDateAndTimeString() const;
  [[nodiscard]] static std::string toDateAndTimeString(const void* data, std::uint64_t length);

 private:
  std::string bytes_;
};
