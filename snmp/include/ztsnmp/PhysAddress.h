#pragma once

#include "NetworkAddress.h"

/// PhysAddress is a 6-byte MAC address: 12 hexadecimal digits without separators.
class ZTSNMP_API PhysAddress : public NetworkAddress {
 public:
  PhysAddress() noexcept;
  explicit PhysAddress(const char* text) noexcept;
  PhysAddress(const PhysAddress& other) noexcept;
  PhysAddress& operator=(const PhysAddress& other) noexcept;
  ~PhysAddress() override;

  [[nodiscard]] EnumDataType getDataType() const noexcept override;  ///< DataTypeNone
  [[nodiscard]] const char* toString() const noexcept override;
  [[nodiscard]] int isValid() const noexcept override;
  [[nodiscard]] EnumAddressType getAddressType() const noexcept override;
  [[nodiscard]] const char* getValue() const noexcept override;

  /// setValue takes exactly 12 hexadecimal digits of either case; -11 for all else, null included.
  int setValue(const char* text) noexcept override;

 private:
  char text_[13] = {};
};
