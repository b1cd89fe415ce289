#include "ZOLTInstanceHandler.h"

#include "Trace.h"

namespace zt {
namespace {

constexpr wchar_t kName[] = L"Global\\{758F66C0-4B4C-4c4a-81F9-D289C5CCE8E5}";

}  // namespace

ZOLTInstanceHandler instanceHandler;

ZOLTInstanceHandler::ZOLTInstanceHandler()
    : mutex_(CreateMutexW(nullptr, FALSE, kName)), creationError_(GetLastError()) {}

bool ZOLTInstanceHandler::IsAnyRunning() {
  // Another user's may not be opened, but is there.
  return KernelHandle(OpenMutexW(SYNCHRONIZE, FALSE, kName)) || GetLastError() == ERROR_ACCESS_DENIED;
}

bool ZOLTInstanceHandler::WaitForPrevious(int attempts, const Pause& pause) const {
  for (; AlreadyRunning(); --attempts) {
    if (attempts == 0) return false;
    ZT_TRACE(Warning, "Waiting for previous instance terminated...");
    pause(1000);
  }
  return true;
}

}  // namespace zt
