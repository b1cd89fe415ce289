#include "ztsnmp/TrapPDU.h"

TrapPDU::TrapPDU() noexcept = default;
TrapPDU::TrapPDU(const TrapPDU& other) = default;
TrapPDU::TrapPDU(TrapPDU&& other) noexcept = default;
TrapPDU& TrapPDU::operator=(const TrapPDU& other) = default;
TrapPDU& TrapPDU::operator=(TrapPDU&& other) noexcept = default;
TrapPDU::~TrapPDU() = default;

const VarBind* TrapPDU::getVarBindList() const noexcept { return varBinds_.data(); }
int TrapPDU::getVarBindCount() const noexcept { return static_cast<int>(varBinds_.size()); }
const VarBind& TrapPDU::getVarBind(unsigned index) const noexcept { return varBinds_[index]; }
const OID& TrapPDU::getEnterprise() const noexcept { return enterprise_; }
const NetworkAddress& TrapPDU::getSourceAddress() const noexcept { return source_; }
int TrapPDU::getTrapType() const noexcept { return trapType_; }
int TrapPDU::getTrapCode() const noexcept { return trapCode_; }
const TimeTicks& TrapPDU::getTrapTime() const noexcept { return time_; }

int TrapPDU::isValid() const noexcept {
  constexpr int kEnterpriseSpecific = 6;
  const bool valid = trapType_ >= 0 && trapType_ <= kEnterpriseSpecific && source_.isValid() == StatusSuccess &&
                     enterprise_.isValid() == StatusSuccess && time_.isValid() == StatusSuccess;
  return valid ? StatusSuccess : StatusGeneralError;
}
