#include "ztsnmp/ReqRespPDU.h"

#include <new>
#include <utility>

ReqRespPDU::ReqRespPDU() noexcept = default;
ReqRespPDU::ReqRespPDU(const ReqRespPDU& other) = default;
ReqRespPDU::ReqRespPDU(ReqRespPDU&& other) noexcept = default;
ReqRespPDU& ReqRespPDU::operator=(const ReqRespPDU& other) = default;
ReqRespPDU& ReqRespPDU::operator=(ReqRespPDU&& other) noexcept = default;
ReqRespPDU::~ReqRespPDU() = default;
ReqRespPDU::ReqRespPDU(const VarBind* list, int count) noexcept { setVarBindList(list, count); }

VarBind* ReqRespPDU::getVarBindList() noexcept { return varBinds_.data(); }
const VarBind* ReqRespPDU::getVarBindList() const noexcept { return varBinds_.data(); }
int ReqRespPDU::getVarBindCount() const noexcept { return static_cast<int>(varBinds_.size()); }
VarBind& ReqRespPDU::getVarBind(unsigned index) noexcept { return varBinds_[index]; }
const VarBind& ReqRespPDU::getVarBind(unsigned index) const noexcept { return varBinds_[index]; }
EnumPDUType ReqRespPDU::getPDUType() const noexcept { return type_; }
int ReqRespPDU::getErrorStatus() const noexcept { return errorStatus_; }
int ReqRespPDU::getErrorIndex() const noexcept { return errorIndex_; }

int ReqRespPDU::setVarBindList(const VarBind* list, int count) noexcept try {
  if (isValidVarBindList(list, count) != StatusSuccess) return StatusInvalidVarBind;
  varBinds_ = std::vector<VarBind>(list, list + count);  // A copy first: the list may be a part of the old one.
  return StatusSuccess;
} catch (const std::bad_alloc&) {
  return StatusGeneralError;
}

int ReqRespPDU::setVarBind(unsigned index, const VarBind& varBind) noexcept try {
  if (index >= varBinds_.size() || varBind.isValidInPDU() != StatusSuccess) return StatusInvalidVarBind;
  varBinds_[index] = varBind;
  return StatusSuccess;
} catch (const std::bad_alloc&) {
  return StatusGeneralError;
}

int ReqRespPDU::addVarBind(const VarBind& varBind) noexcept try {
  if (varBind.isValidInPDU() != StatusSuccess) return StatusInvalidVarBind;
  varBinds_.push_back(varBind);
  return StatusSuccess;
} catch (const std::bad_alloc&) {
  return StatusGeneralError;
}

int ReqRespPDU::deleteVarBind(unsigned index) noexcept {
  if (index >= varBinds_.size()) return StatusInvalidVarBind;
  varBinds_.erase(varBinds_.begin() + static_cast<std::ptrdiff_t>(index));
  return StatusSuccess;
}

int ReqRespPDU::isValid() const noexcept { return isValidVarBindList(varBinds_.data(), getVarBindCount()); }

int ReqRespPDU::isValidVarBindList(const VarBind* list, int count) noexcept {
  if (list == nullptr || count < 1) return StatusInvalidPDU;
  for (int i = 0; i < count; ++i) {
    if (const int status = list[i].isValidInPDU(); status != StatusSuccess) return status;
  }
  return StatusSuccess;
}
