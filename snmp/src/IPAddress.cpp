#include "ztsnmp/IPAddress.h"

#include <cstring>

#include "OwnedText.h"

IPAddress::IPAddress() noexcept = default;
IPAddress::IPAddress(const char* text) noexcept { setValue(text); }
IPAddress::IPAddress(const IPAddress& other) = default;
IPAddress::IPAddress(IPAddress&& other) noexcept = default;
IPAddress& IPAddress::operator=(const IPAddress& other) = default;
IPAddress& IPAddress::operator=(IPAddress&& other) noexcept = default;
IPAddress::~IPAddress() = default;

EnumDataType IPAddress::getDataType() const noexcept { return DataTypeIPAddress; }
const char* IPAddress::toString() const noexcept { return text_.c_str(); }
int IPAddress::isValid() const noexcept { return isValidAddress(text_.c_str()); }
EnumAddressType IPAddress::getAddressType() const noexcept { return AddressTypeIP; }
const char* IPAddress::getValue() const noexcept { return text_.c_str(); }

int IPAddress::setValue(const char* text) noexcept {
  if (const int status = isValidAddress(text); status != StatusSuccess) return status;
  return ztsnmp::assignText(text_, text, std::strlen(text)) ? StatusSuccess : StatusGeneralError;
}

int IPAddress::isValidAddress(const char* text) noexcept {
  if (text == nullptr) return StatusInvalidIPAddress;
  for (int piece = 0; piece < 4; ++piece) {
    int number = 0;
    int digits = 0;
    for (; *text >= '0' && *text <= '9'; ++text) {
      if (++digits > 3) return StatusInvalidIPAddress;
      number = number * 10 + (*text - '0');
    }
    if (digits == 0 || number > 255) return StatusInvalidIPAddress;
    if (*text != (piece < 3 ? '.' : '\0')) return StatusInvalidIPAddress;
    if (piece < 3) ++text;
  }
  return StatusSuccess;
}
