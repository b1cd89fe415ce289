#include "ztsnmp/IPXAddress.h"

#include <cstring>

#include "HexText.h"

namespace {

constexpr std::size_t kNetworkDigits = 8;
constexpr std::size_t kNodeDigits = 12;

}  // namespace

IPXAddress::IPXAddress() noexcept = default;
IPXAddress::IPXAddress(const char* text) noexcept { setValue(text); }
IPXAddress::IPXAddress(const char* network, const char* node) noexcept { setValue(network, node); }
IPXAddress::IPXAddress(const IPXAddress& other) noexcept = default;
IPXAddress& IPXAddress::operator=(const IPXAddress& other) noexcept = default;
IPXAddress::~IPXAddress() = default;

EnumDataType IPXAddress::getDataType() const noexcept { return DataTypeNone; }
const char* IPXAddress::toString() const noexcept { return text_; }
int IPXAddress::isValid() const noexcept { return isValidPart(text_, Part::Whole); }
EnumAddressType IPXAddress::getAddressType() const noexcept { return AddressTypeIPX; }
const char* IPXAddress::getValue() const noexcept { return text_; }

int IPXAddress::setValue(const char* text) noexcept {
  if (const int status = isValidPart(text, Part::Whole); status != StatusSuccess) return status;
  std::memmove(text_, text, kNetworkDigits + kNodeDigits);
  return StatusSuccess;
}

int IPXAddress::setValue(const char* network, const char* node) noexcept {
  if (const int status = isValidPart(network, Part::Network); status != StatusSuccess) return status;
  if (const int status = isValidPart(node, Part::Node); status != StatusSuccess) return status;
  std::memcpy(text_, network, kNetworkDigits);
  std::memmove(text_ + kNetworkDigits, node, kNodeDigits);
  return StatusSuccess;
}

int IPXAddress::isValidPart(const char* text, Part part) noexcept {
  if (text == nullptr) return StatusInvalidIPXAddress;
  const std::size_t digits = part == Part::Network ? kNetworkDigits
                             : part == Part::Node  ? kNodeDigits
                                                   : kNetworkDigits + kNodeDigits;
  return ztsnmp::isHexText(text, digits) ? StatusSuccess : StatusInvalidIPXAddress;
}
