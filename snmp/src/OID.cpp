#include "ztsnmp/OID.h"

#include <new>
#include <utility>

#include "OIDCodec.h"

namespace {

constexpr std::size_t kMaxTextLength = 255;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

OID::OID(const char* text) noexcept { setValue(text); }

EnumDataType OID::getDataType() const noexcept { return DataTypeOID; }
const char* OID::toString() const noexcept { return text_.c_str(); }
int OID::isValid() const noexcept { return isValidValue(text_.c_str()); }

int OID::setValue(const char* text) noexcept try {
  if (const int status = isValidValue(text); status != StatusSuccess) return status;
  std::string encoding = ztsnmp::OIDCodec::encodingOf(text);
  text_ = text;
  encoding_ = std::move(encoding);
  return StatusSuccess;
} catch (const std::bad_alloc&) {
  return StatusGeneralError;
}

int OID::isValidValue(const char* text) noexcept {
  if (text == nullptr) return StatusInvalidOID;
  bool digitExpected = *text != '\0';  // The empty text is valid, on purpose: it is the name of a fresh binding.
  std::size_t length = 0;
  for (; text[length] != '\0'; ++length) {
    if (length == kMaxTextLength) return StatusInvalidOID;
    const bool digit = isDigit(text[length]);
    if (!digit && (digitExpected || text[length] != '.')) return StatusInvalidOID;
    digitExpected = !digit;
  }
  return digitExpected ? StatusInvalidOID : StatusSuccess;
}
