#pragma once

#include <memory>

#include "Null.h"
#include "OID.h"
#include "SNMPDataType.h"

namespace ztsnmp {
class MessageCodec;
}

/// VarBind is a variable binding: the name of an object and, when there is one, its value (RFC 1157, section 4.1.1).
class ZTSNMP_API VarBind {
 public:
  VarBind() noexcept;
  explicit VarBind(const OID& name);
  VarBind(const VarBind& other);  ///< copies name and value deeply
  VarBind& operator=(const VarBind& other);
  VarBind(VarBind&& other) noexcept;
  VarBind& operator=(VarBind&& other) noexcept;
  ~VarBind();

  [[nodiscard]] const OID& getOID() const noexcept;
  [[nodiscard]] OID& getOID() noexcept;
  int setOID(const OID& name) noexcept;  ///< 0; -1 when memory runs out

  /// hasValue returns whether there is a value at all.
  [[nodiscard]] bool hasValue() const noexcept;

  /// getValue returns the value; a `Null` when there is none. The reference holds until the binding's value is
  /// replaced, which every request does. `getDataType` tells the class to cast it to:
  ///   if (value.getDataType() == DataTypeInteger) level = static_cast<const Integer&>(value).getValue();
  [[nodiscard]] const SNMPDataType& getValue() const noexcept;
  [[nodiscard]] SNMPDataType& getValue() noexcept;

  /// setValue replaces the value by a copy. -16 for an `IPXAddress` or `PhysAddress`, which are no SNMP values; -1 when
  /// memory runs out; the old value stays in both cases.
  int setValue(const SNMPDataType& value) noexcept;

  /// isValid returns 0, or the status of the name or of the value. The value of an `OctetString` may be empty here, but
  /// not in a PDU, see `ReqRespPDU`.
  [[nodiscard]] int isValid() const noexcept;

 private:
  friend class ReqRespPDU;
  friend class ztsnmp::MessageCodec;
  /// isValidInPDU is `isValid` with the stricter rule for the `OctetString`.
  [[nodiscard]] int isValidInPDU() const noexcept;

  void setNull() noexcept;

  OID name_;
  std::unique_ptr<SNMPDataType> value_;  ///< any value but a `Null`
  bool holdsNull_ = false;
  Null null_;
};
