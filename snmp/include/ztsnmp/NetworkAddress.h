#pragma once

#include "SNMPDataType.h"

/// EnumAddressType says which kind an address is.
enum EnumAddressType : int {
  AddressTypeIP = -1001,
  AddressTypeIPX = -1002,
  AddressTypePhys = -1003,
  AddressTypeIPv6 = -1004,
};

/// NetworkAddress is the base of the four address classes. Each keeps its address as text; `toString` and `getValue`
/// return the same text, which is empty for an empty address. An empty address is not valid.
class ZTSNMP_API NetworkAddress : public SNMPDataType {
 public:
  ~NetworkAddress() override;

  [[nodiscard]] virtual EnumAddressType getAddressType() const noexcept = 0;
  [[nodiscard]] virtual const char* getValue() const noexcept = 0;

  /// setValue stores the text when it keeps the rule of the class, else returns that class's negative status and keeps
  /// the old text.
  virtual int setValue(const char* text) noexcept = 0;

 protected:
  NetworkAddress() noexcept;
  NetworkAddress(const NetworkAddress& other) noexcept;
  NetworkAddress& operator=(const NetworkAddress& other) noexcept;
};
