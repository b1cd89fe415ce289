#include "ztsnmp/PhysAddress.h"

#include <cstring>

#include "HexText.h"

namespace {

constexpr std::size_t kDigits = 12;

int checkText(const char* text) {
  return text != nullptr && ztsnmp::isHexText(text, kDigits) ? StatusSuccess : StatusInvalidPhysAddress;
}

}  // namespace

PhysAddress::PhysAddress() noexcept = default;
PhysAddress::PhysAddress(const char* text) noexcept { setValue(text); }
PhysAddress::PhysAddress(const PhysAddress& other) noexcept = default;
PhysAddress& PhysAddress::operator=(const PhysAddress& other) noexcept = default;
PhysAddress::~PhysAddress() = default;

EnumDataType PhysAddress::getDataType() const noexcept { return DataTypeNone; }
const char* PhysAddress::toString() const noexcept { return text_; }
int PhysAddress::isValid() const noexcept { return checkText(text_); }
EnumAddressType PhysAddress::getAddressType() const noexcept { return AddressTypePhys; }
const char* PhysAddress::getValue() const noexcept { return text_; }

int PhysAddress::setValue(const char* text) noexcept {
  if (const int status = checkText(text); status != StatusSuccess) return status;
  std::memmove(text_, text, kDigits);
  return StatusSuccess;
}
