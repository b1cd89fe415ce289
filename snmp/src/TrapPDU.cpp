#include "ztsnmp/TrapPDU.h"

int TrapPDU::isValid() const noexcept {
  constexpr int kEnterpriseSpecific = 6;
  const bool valid = trapType_ >= 0 && trapType_ <= kEnterpriseSpecific && source_.isValid() == StatusSuccess &&
                     enterprise_.isValid() == StatusSuccess && time_.isValid() == StatusSuccess;
  return valid ? StatusSuccess : StatusGeneralError;
}
