#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "SNMPDataType.h"

namespace ztsnmp {
class OIDCodec;
}

/// OID is an OBJECT IDENTIFIER, kept as dotted decimal text such as "1.3.6.1.2.1.1.1.0".
class ZTSNMP_API OID : public SNMPDataType {
 public:
  OID() noexcept;
  explicit OID(const char* text) noexcept;
  OID(const OID& other);
  OID(OID&& other) noexcept;
  OID& operator=(const OID& other);
  OID& operator=(OID&& other) noexcept;
  ~OID() override;

  [[nodiscard]] EnumDataType getDataType() const noexcept override;
  [[nodiscard]] const char* toString() const noexcept override;  ///< the dotted text
  [[nodiscard]] int isValid() const noexcept override;           ///< always 0: other texts are never held

  /// setValue takes the empty text, or at most 255 characters of decimal numbers joined by single dots (no dot in
  /// front or at the end); all else, null included, is refused with -7. The size of the numbers is not checked here,
  /// but not every name can travel:
  ///   - A number above 4294967295, and first two numbers a and b with 40 * a + b above 255, have no encoding. A
  ///   binding
  ///     with such a name, or value, is left out of the message, see `ReqRespPDU`.
  ///   - A number above 2147483647 goes out, but an answer that holds it counts as unreadable.
  ///   - A second number above 39 goes out, but comes back as other first two numbers: "1.40" as "2.0".
  int setValue(const char* text) noexcept;
  [[nodiscard]] const char* getValue() const noexcept;

  /// isValidValue returns 0 or -7 for a text, by the rule of `setValue`.
  [[nodiscard]] static int isValidValue(const char* text) noexcept;

 private:
  friend class ztsnmp::OIDCodec;
  /// How the text goes out, made once; empty when it must be made each time, see OIDCodec. Nearly all names fit.
  struct KeptEncoding {
    std::uint8_t size = 0;
    std::array<std::uint8_t, 39> bytes{};
  };

  std::string text_;  ///< in front: where memory runs out for its copy, the encoding stays as well
  KeptEncoding encoding_;
};
