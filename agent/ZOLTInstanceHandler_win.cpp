#include "ZOLTInstanceHandler.h"

#include "Trace.h"

namespace zt {

ZOLTInstanceHandler instanceHandler;

ZOLTInstanceHandler::ZOLTInstanceHandler()
    : mutex_(CreateMutexW(nullptr, FALSE, L"Global\\{758F66C0-4B4C-4c4a-81F9-D289C5CCE8E5}")),
      creationError_(GetLastError()) {}

bool ZOLTInstanceHandler::WaitForPrevious(int attempts, const Pause& pause) const {
  for (; AlreadyRunning(); --attempts) {
    if (attempts == 0) return false;
    ZT_TRACE(Warning, "Waiting for previous instance terminated...");
    pause(1000);
  }
  return true;
}

}  // namespace zt
