#include "ztsnmp/OID.h"

#include <cstddef>
#include <new>
#include <utility>

#include "OIDCodec.h"

namespace {

constexpr std::ptrdiff_t kMaxTextLength = 255;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

OID::OID() noexcept = default;
OID::OID(const char* text) noexcept { setValue(text); }
OID::OID(const OID& other) = default;
OID::OID(OID&& other) noexcept = default;
OID& OID::operator=(OID&& other) noexcept = default;
OID::~OID() = default;

// A copy first: were memory to run out between text and encoding, the one would be sent and the other shown.
OID& OID::operator=(const OID& other) { return *this = OID(other); }

EnumDataType OID::getDataType() const noexcept { return DataTypeOID; }
const char* OID::toString() const noexcept { return text_.c_str(); }
const char* OID::getValue() const noexcept { return text_.c_str(); }
int OID::isValid() const noexcept { return StatusSuccess; }

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
  if (*text == '\0') return StatusSuccess;  // on purpose: it is the name of a fresh binding
  const char* end = text;
  for (;; ++end) {
    if (!isDigit(*end)) return StatusInvalidOID;
    while (isDigit(*end)) ++end;
    if (*end != '.') break;
  }
  return *end == '\0' && end - text <= kMaxTextLength ? StatusSuccess : StatusInvalidOID;
}
