#pragma once

#include <string>

#include "NetworkAddress.h"

/// IPv6Address is an IPv6 address as text (RFC 4291, section 2.2), which may carry a zone: "fe80::1%12". It serves as
/// the address of an agent. Its data type is that of `IPAddress`, but no SNMPv1 value can carry it: a binding that
/// holds one is left out of a set request.
class ZTSNMP_API IPv6Address : public NetworkAddress {
 public:
  IPv6Address() noexcept;
  explicit IPv6Address(const char* text) noexcept;
  IPv6Address(const IPv6Address& other);
  IPv6Address(IPv6Address&& other) noexcept;
  IPv6Address& operator=(const IPv6Address& other);
  IPv6Address& operator=(IPv6Address&& other) noexcept;
  ~IPv6Address() override;

  [[nodiscard]] EnumDataType getDataType() const noexcept override;  ///< DataTypeIPAddress
  [[nodiscard]] const char* toString() const noexcept override;
  [[nodiscard]] int isValid() const noexcept override;
  [[nodiscard]] EnumAddressType getAddressType() const noexcept override;
  [[nodiscard]] const char* getValue() const noexcept override;
  int setValue(const char* text) noexcept override;

  /// isValidAddress returns 0 for groups of one to four hexadecimal digits with at most one "::" and, if wanted, a
  /// dotted IPv4 address in place of the last two groups; what follows a percent sign is not looked at. -3 for all
  /// else, null included.
  [[nodiscard]] static int isValidAddress(const char* text) noexcept;

 private:
  std::string text_;
};
