#include "ProtectionGuard.h"

#include "Trace.h"

namespace zt {
namespace {

std::wstring NameFor(const std::wstring& queueName) { return L"ZT.exe-" + queueName; }

}  // namespace

ProtectionGuard::ProtectionGuard(const std::wstring& queueName) {
  const std::wstring name = NameFor(queueName);
  mapping_ = KernelHandle(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 4, name.c_str()));
  heldByAnother_ = mapping_ && GetLastError() == ERROR_ALREADY_EXISTS;
  if (!heldByAnother_) return;
  // At once: while this handle is open, the name lives on after the other process has ended.
  mapping_.Reset();
  WriteDebug("[ZT] PPA - already running..");
}

bool ProtectionGuard::IsHeld(const std::wstring& queueName) {
  return static_cast<bool>(KernelHandle(OpenFileMappingW(FILE_MAP_READ, FALSE, NameFor(queueName).c_str())));
}

}  // namespace zt
