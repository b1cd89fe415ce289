#include "ztsnmp/ReqRespPDU.h"

#include <algorithm>
#include <new>
#include <utility>

#include "VarBindArray.h"

using ztsnmp::copyVarBinds;

ReqRespPDU::ReqRespPDU() noexcept = default;
ReqRespPDU::ReqRespPDU(const VarBind* list, int count) { setVarBindList(list, count); }
ReqRespPDU::ReqRespPDU(const ReqRespPDU& other)
    : varBinds_(copyVarBinds(other.varBinds_.get(), other.varBindCount_)),
      varBindCount_(other.varBindCount_),
      type_(other.type_),
      requestId_(other.requestId_),
      errorStatus_(other.errorStatus_),
      errorIndex_(other.errorIndex_) {}

ReqRespPDU::ReqRespPDU(ReqRespPDU&& other) noexcept : ReqRespPDU() { *this = std::move(other); }
ReqRespPDU::~ReqRespPDU() = default;

ReqRespPDU& ReqRespPDU::operator=(const ReqRespPDU& other) {
  ReqRespPDU copy(other);
  return *this = std::move(copy);
}

ReqRespPDU& ReqRespPDU::operator=(ReqRespPDU&& other) noexcept {
  varBinds_ = std::move(other.varBinds_);
  varBindCount_ = std::exchange(other.varBindCount_, 0);
  type_ = other.type_;
  requestId_ = other.requestId_;
  errorStatus_ = other.errorStatus_;
  errorIndex_ = other.errorIndex_;
  return *this;
}

int ReqRespPDU::setVarBindList(const VarBind* list, int count) noexcept {
  if (isValidVarBindList(list, count) != StatusSuccess) return StatusInvalidVarBind;
  try {
    varBinds_ = copyVarBinds(list, count);
    varBindCount_ = count;
    return StatusSuccess;
  } catch (const std::bad_alloc&) {
    return StatusGeneralError;
  }
}

int ReqRespPDU::setVarBind(unsigned index, const VarBind& varBind) noexcept {
  if (std::cmp_greater_equal(index, varBindCount_) || varBind.isValidInPDU() != StatusSuccess) {
    return StatusInvalidVarBind;
  }
  try {
    varBinds_[index] = varBind;
    return StatusSuccess;
  } catch (const std::bad_alloc&) {
    return StatusGeneralError;
  }
}

int ReqRespPDU::addVarBind(const VarBind& varBind) noexcept {
  if (varBind.isValidInPDU() != StatusSuccess) return StatusInvalidVarBind;
  try {
    const auto count = static_cast<std::size_t>(varBindCount_);
    auto grown = std::make_unique<VarBind[]>(count + 1);
    grown[count] = varBind;  // First, since it may be one of the bindings that move.
    std::move(varBinds_.get(), varBinds_.get() + count, grown.get());
    varBinds_ = std::move(grown);
    ++varBindCount_;
    return StatusSuccess;
  } catch (const std::bad_alloc&) {
    return StatusGeneralError;
  }
}

int ReqRespPDU::deleteVarBind(unsigned index) noexcept {
  if (std::cmp_greater_equal(index, varBindCount_)) return StatusInvalidVarBind;
  VarBind* const list = varBinds_.get();
  std::move(list + index + 1, list + varBindCount_, list + index);
  list[--varBindCount_] = VarBind();
  return StatusSuccess;
}

int ReqRespPDU::isValid() const noexcept { return isValidVarBindList(varBinds_.get(), varBindCount_); }

int ReqRespPDU::isValidVarBindList(const VarBind* list, int count) noexcept {
  if (list == nullptr || count < 1) return StatusInvalidPDU;
  for (int i = 0; i < count; ++i) {
    if (const int status = list[i].isValidInPDU(); status != StatusSuccess) return status;
  }
  return StatusSuccess;
}
