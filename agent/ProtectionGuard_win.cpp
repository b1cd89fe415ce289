#include "ProtectionGuard.h"

#include "Trace.h"

namespace zt {

ProtectionGuard::ProtectionGuard(const std::wstring& queueName) {
  const std::wstring name = L"ZT.exe-" + queueName;
  mapping_ = KernelHandle(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 4, name.c_str()));
  heldByAnother_ = mapping_ && GetLastError() == ERROR_ALREADY_EXISTS;
  if (!heldByAnother_) return;
  // At once: while this handle is open, the name lives on after the other process has ended.
  mapping_.Reset();
  WriteDebug("[ZT] PPA - already running..");
}

}  // namespace zt
