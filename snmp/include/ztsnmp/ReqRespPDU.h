#pragma once

#include <vector>

#include "VarBind.h"

namespace ztsnmp {
class MessageCodec;
}

/// EnumPDUType says what a PDU asks or answers; the numbers are the BER tags (RFC 1157, section 4.1).
enum EnumPDUType : int {
  PDUGetRequest = 0xA0,
  PDUGetNextRequest = 0xA1,
  PDUGetResponse = 0xA2,
  PDUSetRequest = 0xA3,
};

/// ReqRespPDU is a request and, after the operation, its answer in the same bindings. Copies are deep.
///
/// Fill in the bindings, hand the PDU to `SNMPManager::get`, `getNext` or `set`, and read the same bindings again: a
/// get-next has also replaced the names by those of the objects that the agent returned. `get` and `getNext` replace
/// the values by `Null` before anything is sent, so after a failure the old values are gone.
///
/// A PDU is refused when it holds no binding (-8), an invalid name (-7), an invalid value (that value's status) or an
/// empty `OctetString` (-58). The last one concerns walks, too: after an answer with an empty text, set the value of
/// the binding to a `Null` before you ask for the next.
///
/// A binding that has no encoding (some names, see `OID`; in a set also an `IPv6Address`, or no value at all) is left
/// out of the message, and the others go out all the same. The answer then lacks a binding and counts as unreadable,
/// though the agent may have set the others.
class ZTSNMP_API ReqRespPDU {
 public:
  ReqRespPDU() noexcept;
  /// Copies the bindings; empty when `setVarBindList` would refuse them.
  ReqRespPDU(const VarBind* list, int count) noexcept;
  ReqRespPDU(const ReqRespPDU& other);
  ReqRespPDU(ReqRespPDU&& other) noexcept;
  ReqRespPDU& operator=(const ReqRespPDU& other);
  ReqRespPDU& operator=(ReqRespPDU&& other) noexcept;
  ~ReqRespPDU();

  /// getVarBindList returns the first of `getVarBindCount` bindings. It belongs to the PDU and holds until a binding is
  /// added or deleted or the list is replaced.
  [[nodiscard]] VarBind* getVarBindList() noexcept;
  [[nodiscard]] const VarBind* getVarBindList() const noexcept;
  [[nodiscard]] int getVarBindCount() const noexcept;

  /// getVarBind returns one binding. The index, from 0, is not checked.
  [[nodiscard]] VarBind& getVarBind(unsigned index) noexcept;
  [[nodiscard]] const VarBind& getVarBind(unsigned index) const noexcept;

  /// setVarBindList replaces all bindings by copies. -9 when one of them, or the list, is not valid, -1 when memory
  /// runs out; the old list stays in both cases.
  int setVarBindList(const VarBind* list, int count) noexcept;

  /// setVarBind replaces one binding by a copy. -9 when it is not valid or the index is out of range.
  int setVarBind(unsigned index, const VarBind& varBind) noexcept;

  /// addVarBind appends a copy. -9 when it is not valid.
  int addVarBind(const VarBind& varBind) noexcept;

  /// deleteVarBind removes one binding, those behind it move down. -9 for an index out of range.
  int deleteVarBind(unsigned index) noexcept;

  [[nodiscard]] EnumPDUType getPDUType() const noexcept;

  /// getErrorStatus returns, after an operation, 0 or the agent's error (RFC 1157, section 4.1.1: 1 tooBig,
  /// 2 noSuchName, 3 badValue, 4 readOnly, 5 genErr), or -1 when there was no answer that could be read. 0 after a -53
  /// says that the request was too long to be sent, see `SNMPManager::get`.
  [[nodiscard]] int getErrorStatus() const noexcept;

  /// getErrorIndex returns which binding the agent's error is about, counted from 1; 0 or -1 as `getErrorStatus`.
  [[nodiscard]] int getErrorIndex() const noexcept;

  /// isValid returns 0, or the status of the first thing that makes a manager refuse the PDU.
  [[nodiscard]] int isValid() const noexcept;

 private:
  friend class ztsnmp::MessageCodec;
  [[nodiscard]] static int isValidVarBindList(const VarBind* list, int count) noexcept;

  std::vector<VarBind> varBinds_;
  EnumPDUType type_ = PDUGetRequest;
  int requestId_ = 0;
  int errorStatus_ = 0;
  int errorIndex_ = 0;
};
