#pragma once

#include "NetworkAddress.h"

/// IPXAddress is an IPX address: 20 hexadecimal digits, 8 of the network number and 12 of the node number.
class ZTSNMP_API IPXAddress : public NetworkAddress {
 public:
  IPXAddress() noexcept;
  explicit IPXAddress(const char* text) noexcept;
  IPXAddress(const char* network, const char* node) noexcept;
  IPXAddress(const IPXAddress& other) noexcept;
  IPXAddress& operator=(const IPXAddress& other) noexcept;
  ~IPXAddress() override;

  [[nodiscard]] EnumDataType getDataType() const noexcept override;  ///< DataTypeNone
  [[nodiscard]] const char* toString() const noexcept override;
  [[nodiscard]] int isValid() const noexcept override;
  [[nodiscard]] EnumAddressType getAddressType() const noexcept override;
  [[nodiscard]] const char* getValue() const noexcept override;

  /// setValue takes exactly 20 hexadecimal digits of either case; -5 for all else, null included.
  int setValue(const char* text) noexcept override;

  /// setValue takes 8 digits of the network and 12 digits of the node, and stores them joined; -5 for all else.
  int setValue(const char* network, const char* node) noexcept;

 private:
  enum class Part { Whole, Network, Node };
  [[nodiscard]] static int isValidPart(const char* text, Part part) noexcept;

  char text_[21] = {};
};
