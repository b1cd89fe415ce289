// get HOST OID...: asks an agent for objects, all in one request.

#include <ztsnmp/ztsnmp.h>

#include <cstdio>

#include "Text.h"

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("usage: get HOST OID...\n", stderr);
    return 2;
  }
  ReqRespPDU pdu;
  for (int i = 2; i < argc; ++i) {
    OID name;
    if (name.setValue(argv[i]) != StatusSuccess) {
      std::fprintf(stderr, "%s is no object identifier\n", argv[i]);
      return 2;
    }
    pdu.addVarBind(VarBind(name));
  }
  Target target;
  target.setAgentAddress(argv[1]);

  if (SNMPStartup() != 0) return 1;
  SNMPManager manager;
  const int status = manager.get(pdu, target);
  if (status != StatusSuccess) {
    std::fprintf(stderr, "%s (agent's error %d, object %d)\n", SNMPManager::errorToString(status), pdu.getErrorStatus(),
                 pdu.getErrorIndex());
  } else {
    for (int i = 0; i < pdu.getVarBindCount(); ++i) {
      const VarBind& binding = pdu.getVarBind(static_cast<unsigned>(i));
      std::printf("%s = %s\n", binding.getOID().getValue(), escaped(binding.getValue()).c_str());
    }
  }
  SNMPCleanup();
  return status == StatusSuccess ? 0 : 1;
}
