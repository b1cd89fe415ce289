#include "ztsnmp/OctetString.h"

#include <cstdio>
#include <span>

#include "HexText.h"
#include "OwnedText.h"

namespace {

std::span<const std::uint8_t> asBytes(const void* data, std::size_t length) {
  return {static_cast<const std::uint8_t*>(data), length};
}

}  // namespace

OctetString::OctetString() noexcept = default;
OctetString::OctetString(const void* data, std::uint64_t length) noexcept { setValue(data, length); }
OctetString::OctetString(const OctetString& other) = default;
OctetString::OctetString(OctetString&& other) noexcept = default;
OctetString& OctetString::operator=(const OctetString& other) = default;
OctetString& OctetString::operator=(OctetString&& other) noexcept = default;
OctetString::~OctetString() = default;

EnumDataType OctetString::getDataType() const noexcept { return DataTypeOctetString; }
const char* OctetString::toString() const noexcept { return bytes_.c_str(); }

// Valid even when empty, on purpose: an agent may well answer an empty text. Only requests are stricter.
int OctetString::isValid() const noexcept { return StatusSuccess; }

int OctetString::setValue(const void* data, std::uint64_t length) noexcept {
  if (const int status = isValidValue(data, length); status == StatusInvalidOctetString) return status;
  const bool stored = ztsnmp::assignText(bytes_, static_cast<const char*>(data), static_cast<std::size_t>(length));
  return stored ? StatusSuccess : StatusGeneralError;
}

const unsigned char* OctetString::getValue(std::uint64_t& length) const noexcept {
  length = bytes_.size();
  return static_cast<const unsigned char*>(static_cast<const void*>(bytes_.c_str()));
}

int OctetString::isValidValue(const void* data, std::uint64_t length) noexcept {
  if (data == nullptr || length > kMaxLength) return StatusInvalidOctetString;
  return length == 0 ? StatusZeroLengthOctetString : StatusSuccess;
}

std::string OctetString::toHexString() const { return ztsnmp::HtoA(asBytes(bytes_.data(), bytes_.size())); }

std::string OctetString::toDateAndTimeString() const { return toDateAndTimeString(bytes_.data(), bytes_.size()); }

std::string OctetString::toDateAndTimeString(const void* data, std::uint64_t length) {
  if (data == nullptr || (length != 8 && length != 11)) return {};
  const auto b = asBytes(data, static_cast<std::size_t>(length));
  char text[64];
  if (length == 8) {
    std::snprintf(text, sizeof(text), "%04d-%02d-%02d,%02d:%02d:%02d", b[0] * 256 + b[1], b[2], b[3], b[4], b[5], b[6]);
  } else {
    std::snprintf(text, sizeof(text), "%04d-%02d-%02d,%02d:%02d:%02d.%d,%c%02d:%02d", b[0] * 256 + b[1], b[2], b[3],
                  b[4], b[5], b[6], b[7], b[8], b[9], b[10]);
  }
  return text;
}
