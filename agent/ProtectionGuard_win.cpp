#include "ProtectionGuard.h"
#include "Trace.h"

namespace zt {

ProtectionGuard::ProtectionGuard(const std::wstring& queueName) {
  const std::wstring name = L"ZT.exe-" + queueName;
  KernelHandle mapping(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 4, name.c_str()));
  heldByAnother_ = mapping && GetLastError() == ERROR_ALREADY_EXISTS;
  if (heldByAnother_) {
    WriteDebug("[ZT] PPA - already running..");
  } else {
    mapping_ = std::move(mapping);
  }
}

}  // namespace zt
