#pragma once

#include <string>

#include "NetworkAddress.h"

/// IPAddress is an IPv4 address as dotted decimal text; in a binding it travels as an IpAddress of four octets
/// (RFC 1155, section 3.2.3.2).
class ZTSNMP_API IPAddress : public NetworkAddress {
 public:
  IPAddress() noexcept;
  explicit IPAddress(const char* text) noexcept;
  IPAddress(const IPAddress& other);
  IPAddress(IPAddress&& other) noexcept;
  IPAddress& operator=(const IPAddress& other);
  IPAddress& operator=(IPAddress&& other) noexcept;
  ~IPAddress() override;

  [[nodiscard]] EnumDataType getDataType() const noexcept override;
  [[nodiscard]] const char* toString() const noexcept override;
  [[nodiscard]] int isValid() const noexcept override;
  [[nodiscard]] EnumAddressType getAddressType() const noexcept override;
  [[nodiscard]] const char* getValue() const noexcept override;
  int setValue(const char* text) noexcept override;

  /// isValidAddress returns 0 for four decimal numbers below 256, of one to three digits each (leading zeros are
  /// fine: "192.168.001.010"), joined by dots; -3 for all else, null included.
  [[nodiscard]] static int isValidAddress(const char* text) noexcept;

 private:
  std::string text_;
};
