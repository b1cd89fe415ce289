#pragma once

#include <vector>

#include "IPAddress.h"
#include "Numbers.h"
#include "OID.h"
#include "VarBind.h"

namespace ztsnmp {
class MessageCodec;
}

/// TrapPDU is a received SNMPv1 trap (RFC 1157, section 4.1.6). Only the library's decoder fills it; copies are deep.
/// No public operation of this version hands one out: no trap service is spoken with, see `SNMPManager::_register`.
class ZTSNMP_API TrapPDU {
 public:
  TrapPDU() noexcept;
  TrapPDU(const TrapPDU& other);
  TrapPDU(TrapPDU&& other) noexcept;
  TrapPDU& operator=(const TrapPDU& other);
  TrapPDU& operator=(TrapPDU&& other) noexcept;
  ~TrapPDU();

  [[nodiscard]] const VarBind* getVarBindList() const noexcept;
  [[nodiscard]] int getVarBindCount() const noexcept;
  /// getVarBind returns one binding. The index, from 0, is not checked.
  [[nodiscard]] const VarBind& getVarBind(unsigned index) const noexcept;

  /// getEnterprise returns the type of the object that sent the trap.
  [[nodiscard]] const OID& getEnterprise() const noexcept;

  /// getSourceAddress returns the agent's address as the trap states it ("0.0.0.0" when it states none); an address
  /// that is not valid before anything was decoded.
  [[nodiscard]] const NetworkAddress& getSourceAddress() const noexcept;

  /// getTrapType returns the generic type: 0 coldStart, 1 warmStart, 2 linkDown, 3 linkUp, 4 authenticationFailure,
  /// 5 egpNeighborLoss, 6 enterpriseSpecific (then `getTrapCode` tells more).
  [[nodiscard]] int getTrapType() const noexcept;
  [[nodiscard]] int getTrapCode() const noexcept;

  /// getTrapTime returns the time from the agent's start to the trap.
  [[nodiscard]] const TimeTicks& getTrapTime() const noexcept;

  /// isValid returns 0 when the generic type is 0 to 6 and source address, enterprise and time are valid, else -1.
  [[nodiscard]] int isValid() const noexcept;

 private:
  friend class ztsnmp::MessageCodec;

  std::vector<VarBind> varBinds_;
  OID enterprise_;
  IPAddress source_;
  int trapType_ = 0;
  int trapCode_ = 0;
  TimeTicks time_;
};
