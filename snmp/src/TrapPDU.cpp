#include "ztsnmp/TrapPDU.h"

#include <utility>

#include "VarBindArray.h"

namespace {

constexpr int kEnterpriseSpecific = 6;

}  // namespace

TrapPDU::TrapPDU() noexcept = default;

TrapPDU::TrapPDU(const TrapPDU& other)
    : varBinds_(ztsnmp::copyVarBinds(other.varBinds_.get(), other.varBindCount_)),
      varBindCount_(other.varBindCount_),
      enterprise_(other.enterprise_),
      source_(other.source_),
      trapType_(other.trapType_),
      trapCode_(other.trapCode_),
      time_(other.time_) {}

TrapPDU::TrapPDU(TrapPDU&& other) noexcept : TrapPDU() { *this = std::move(other); }
TrapPDU::~TrapPDU() = default;

TrapPDU& TrapPDU::operator=(const TrapPDU& other) {
  TrapPDU copy(other);
  return *this = std::move(copy);
}

TrapPDU& TrapPDU::operator=(TrapPDU&& other) noexcept {
  varBinds_ = std::move(other.varBinds_);
  varBindCount_ = std::exchange(other.varBindCount_, 0);
  enterprise_ = std::move(other.enterprise_);
  source_ = std::move(other.source_);
  trapType_ = other.trapType_;
  trapCode_ = other.trapCode_;
  time_ = other.time_;
  return *this;
}

int TrapPDU::isValid() const noexcept {
  const bool valid = trapType_ >= 0 && trapType_ <= kEnterpriseSpecific && source_.isValid() == StatusSuccess &&
                     enterprise_.isValid() == StatusSuccess && time_.isValid() == StatusSuccess;
  return valid ? StatusSuccess : StatusGeneralError;
}
