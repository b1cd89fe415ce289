#include "ztsnmp/OID.h"

#include <cstddef>
#include <cstring>
#include <utility>

#include "OIDCodec.h"
#include "OwnedText.h"

namespace {

constexpr std::ptrdiff_t kMaxTextLength = 255;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

OID::OID() noexcept = default;
OID::OID(const char* text) noexcept { setValue(text); }
OID::OID(const OID& other) = default;
OID& OID::operator=(const OID& other) = default;
OID::~OID() = default;

// The encoding leaves with its text, as it would go out for what is left.
OID::OID(OID&& other) noexcept : text_(std::move(other.text_)), encoding_(std::exchange(other.encoding_, {})) {}

OID& OID::operator=(OID&& other) noexcept {
  text_ = std::move(other.text_);
  encoding_ = std::exchange(other.encoding_, {});
  return *this;
}

EnumDataType OID::getDataType() const noexcept { return DataTypeOID; }
const char* OID::toString() const noexcept { return text_.c_str(); }
const char* OID::getValue() const noexcept { return text_.c_str(); }
int OID::isValid() const noexcept { return StatusSuccess; }

int OID::setValue(const char* text) noexcept {
  if (const int status = isValidValue(text); status != StatusSuccess) return status;
  if (!ztsnmp::assignText(text_, text, std::strlen(text))) return StatusGeneralError;
  encoding_ = ztsnmp::OIDCodec::encodingOf(text_.c_str());
  return StatusSuccess;
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
