// The trap service is a program of its own that may run on this machine. No protocol with it is known to this version:
// registrations are checked and refused.

#include "Sockets.h"
#include "TrapMessage.h"
#include "ztsnmp/SNMPManager.h"

int SNMPManager::isTrapServerRunning() noexcept {
  return ztsnmp::isMappingPresent("TrapServerFileMappingObject", sizeof(_MESSAGE)) ? 1 : 0;
}

int SNMPManager::_register(const char* appName, TrapCallback onTrap) noexcept {
  if (appName == nullptr || *appName == '\0' || onTrap == nullptr) return StatusRegistrationInvalidParameters;
  return isTrapServerRunning() == 1 ? StatusRegistrationTimeout : StatusRegistrationError;
}

int SNMPManager::unregister() noexcept { return StatusUnregistrationError; }

int SNMPManager::keepAlive(ReqRespPDU& /*pdu*/, const char* /*text*/, unsigned long /*interval*/) noexcept {
  return StatusGeneralError;
}
