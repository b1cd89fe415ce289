#include "ztsnmp/IPv6Address.h"

#include <cstring>
#include <string_view>

#include "HexText.h"
#include "OwnedText.h"
#include "ztsnmp/IPAddress.h"

namespace {

constexpr int kGroups = 8;

/// The digits of a group, or of a dotted tail, at the front of the text.
std::string_view firstPiece(std::string_view text) { return text.substr(0, text.find(':')); }

bool isGroup(std::string_view piece) { return piece.size() <= 4 && ztsnmp::isHexText(piece, piece.size()); }

bool isDottedTail(std::string_view piece) {
  char copy[16] = {};
  if (piece.size() >= sizeof(copy)) return false;
  piece.copy(copy, piece.size());
  return IPAddress::isValidAddress(copy) == StatusSuccess;
}

/// RFC 4291, section 2.2, without a zone.
bool isAddress(std::string_view text) {
  int groups = 0;
  bool compressed = text.starts_with("::");
  if (compressed) text.remove_prefix(2);
  if (text.empty()) return compressed;

  for (;;) {
    const std::string_view piece = firstPiece(text);
    text.remove_prefix(piece.size());
    if (piece.empty()) return false;
    if (isGroup(piece)) {
      ++groups;
    } else if (text.empty() && isDottedTail(piece)) {
      groups += 2;
    } else {
      return false;
    }
    if (text.empty()) break;
    if (text.starts_with("::")) {
      if (compressed) return false;
      compressed = true;
      text.remove_prefix(2);
      if (text.empty()) break;
    } else {
      text.remove_prefix(1);
    }
  }
  // "::" stands for one group or more.
  return compressed ? groups < kGroups : groups == kGroups;
}

}  // namespace

IPv6Address::IPv6Address() noexcept = default;
IPv6Address::IPv6Address(const char* text) noexcept { setValue(text); }
IPv6Address::IPv6Address(const IPv6Address& other) = default;
IPv6Address::IPv6Address(IPv6Address&& other) noexcept = default;
IPv6Address& IPv6Address::operator=(const IPv6Address& other) = default;
IPv6Address& IPv6Address::operator=(IPv6Address&& other) noexcept = default;
IPv6Address::~IPv6Address() = default;

// No tag of its own, on purpose: SNMPv1 knows IpAddress only.
EnumDataType IPv6Address::getDataType() const noexcept { return DataTypeIPAddress; }
const char* IPv6Address::toString() const noexcept { return text_.c_str(); }
int IPv6Address::isValid() const noexcept { return isValidAddress(text_.c_str()); }
EnumAddressType IPv6Address::getAddressType() const noexcept { return AddressTypeIPv6; }
const char* IPv6Address::getValue() const noexcept { return text_.c_str(); }

int IPv6Address::setValue(const char* text) noexcept {
  if (const int status = isValidAddress(text); status != StatusSuccess) return status;
  return ztsnmp::assignText(text_, text, std::strlen(text)) ? StatusSuccess : StatusGeneralError;
}

int IPv6Address::isValidAddress(const char* text) noexcept {
  if (text == nullptr) return StatusInvalidIPAddress;
  const std::string_view whole(text);
  return isAddress(whole.substr(0, whole.find('%'))) ? StatusSuccess : StatusInvalidIPAddress;
}
