// discover: lists the agents of the local networks that answer, and what they say they are (sysDescr).

#include <ztsnmp/ztsnmp.h>

#include <cstdio>

#include "Text.h"

namespace {

void show(ReqRespPDU& answer, NetworkAddress* sender) {
  std::printf("%-40s %s\n", sender->getValue(), blanked(answer.getVarBind(0).getValue().toString()).c_str());
}

}  // namespace

int main() {
  if (SNMPStartup() != 0) return 1;
  SNMPManager manager;
  ReqRespPDU pdu;
  pdu.addVarBind(VarBind(OID("1.3.6.1.2.1.1.1.0")));
  const int status = manager.broadcast(pdu, "public", show, nullptr, 2);
  if (status != StatusSuccess) std::fprintf(stderr, "%s\n", SNMPManager::errorToString(status));
  SNMPCleanup();
  return status == StatusSuccess ? 0 : 1;
}
