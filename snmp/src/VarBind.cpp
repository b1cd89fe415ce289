#include "ztsnmp/VarBind.h"

#include <new>
#include <utility>

#include "ztsnmp/IPAddress.h"
#include "ztsnmp/IPv6Address.h"
#include "ztsnmp/Numbers.h"
#include "ztsnmp/OctetString.h"

namespace {

template <typename Value>
std::unique_ptr<SNMPDataType> copyAs(const SNMPDataType& value) {
  return std::make_unique<Value>(static_cast<const Value&>(value));
}

/// A copy of the same class; null for `Null` and for the classes that are no SNMP values.
std::unique_ptr<SNMPDataType> copyOf(const SNMPDataType& value) {
  switch (value.getDataType()) {
    case DataTypeInteger:
      return copyAs<Integer>(value);
    case DataTypeOctetString:
      return copyAs<OctetString>(value);
    case DataTypeOID:
      return copyAs<OID>(value);
    case DataTypeIPAddress:
      // Two classes share this tag.
      return static_cast<const NetworkAddress&>(value).getAddressType() == AddressTypeIPv6 ? copyAs<IPv6Address>(value)
                                                                                           : copyAs<IPAddress>(value);
    case DataTypeCounter:
      return copyAs<Counter>(value);
    case DataTypeGauge:
      return copyAs<Gauge>(value);
    case DataTypeTimeTicks:
      return copyAs<TimeTicks>(value);
    case DataTypeNull:  // needs no copy
    case DataTypeNone:
      break;
  }
  return nullptr;
}

}  // namespace

VarBind::VarBind() noexcept = default;
// By reference, as programs that were built with the library call it. NOLINTNEXTLINE(modernize-pass-by-value)
VarBind::VarBind(const OID& name) : name_(name) {}
VarBind::VarBind(const VarBind& other)
    : name_(other.name_), value_(other.value_ ? copyOf(*other.value_) : nullptr), holdsNull_(other.holdsNull_) {}
VarBind::VarBind(VarBind&& other) noexcept = default;
VarBind& VarBind::operator=(VarBind&& other) noexcept = default;
VarBind::~VarBind() = default;

VarBind& VarBind::operator=(const VarBind& other) {
  VarBind copy(other);
  return *this = std::move(copy);
}

const OID& VarBind::getOID() const noexcept { return name_; }
OID& VarBind::getOID() noexcept { return name_; }

int VarBind::setOID(const OID& name) noexcept {
  try {
    name_ = name;
    return StatusSuccess;
  } catch (const std::bad_alloc&) {
    return StatusGeneralError;
  }
}

bool VarBind::hasValue() const noexcept { return value_ != nullptr || holdsNull_; }

const SNMPDataType& VarBind::getValue() const noexcept {
  if (value_) return *value_;
  return null_;
}

SNMPDataType& VarBind::getValue() noexcept {
  if (value_) return *value_;
  return null_;
}

// Each request begins with this, so it costs no memory.
void VarBind::setNull() noexcept {
  value_.reset();
  holdsNull_ = true;
}

int VarBind::setValue(const SNMPDataType& value) noexcept {
  if (value.getDataType() == DataTypeNull) {
    setNull();
    return StatusSuccess;
  }
  try {
    auto copy = copyOf(value);
    if (!copy) return StatusInvalidValueInVarBind;
    value_ = std::move(copy);
    holdsNull_ = false;
    return StatusSuccess;
  } catch (const std::bad_alloc&) {
    return StatusGeneralError;
  }
}

int VarBind::isValid() const noexcept {
  if (const int status = name_.isValid(); status != StatusSuccess) return status;
  return value_ ? value_->isValid() : StatusSuccess;
}

int VarBind::isValidInPDU() const noexcept {
  if (const int status = isValid(); status != StatusSuccess) return status;
  if (!value_ || value_->getDataType() != DataTypeOctetString) return StatusSuccess;
  std::uint64_t length = 0;
  const auto* bytes = static_cast<const OctetString&>(*value_).getValue(length);
  return OctetString::isValidValue(bytes, length);
}
