#pragma once

#include "Export.h"
#include "SNMPStatus.h"

/// EnumDataType says which class a value is. The numbers are the BER tags that the value has on the wire
/// (RFC 1155, section 6), except DataTypeNone, which never travels.
enum EnumDataType : int {
  DataTypeNone = -1,
  DataTypeInteger = 2,
  DataTypeOctetString = 4,
  DataTypeNull = 5,
  DataTypeOID = 6,
  DataTypeIPAddress = 0x40,  ///< `IPAddress` and, sharing the tag, `IPv6Address`
  DataTypeCounter = 0x41,
  DataTypeGauge = 0x42,
  DataTypeTimeTicks = 0x43,
};

/// SNMPDataType is the root of all values and addresses.
///
/// Every class below it has a default constructor (empty, or 0) and deep copies; all but `Null`, which has no content,
/// also a constructor from the content (content that is refused leaves the object empty), `setValue` (0 or a negative
/// status; a refused set keeps the old content) and `getValue`. Texts that are returned as `const char*` belong to the
/// object and stay valid until its next set, assignment or destruction.
///
/// No operation of the library throws, with one exception: what has no status to tell it by throws `std::bad_alloc`
/// when memory runs out. That are copies and copying assignments, a constructor from another object, and the operations
/// that return a `std::string` (`OctetString::toHexString`, `toDateAndTimeString`).
class ZTSNMP_API SNMPDataType {
 public:
  virtual ~SNMPDataType();

  /// getDataType returns the class of the value, which is also its BER tag.
  [[nodiscard]] virtual EnumDataType getDataType() const noexcept = 0;

  /// toString renders the content as text, NUL-terminated, owned by the object; never null. Numbers render it into the
  /// object at each call: two threads must not call it for one object at the same time.
  [[nodiscard]] virtual const char* toString() const noexcept = 0;

  /// isValid returns 0 when the content keeps its class's rule, else the negative status of that class.
  [[nodiscard]] virtual int isValid() const noexcept = 0;

 protected:
  SNMPDataType() noexcept;
  SNMPDataType(const SNMPDataType& other) noexcept;
  SNMPDataType& operator=(const SNMPDataType& other) noexcept;
};
