// Endurance_test [OPERATIONS]: so many operations (2000) against a local agent leave no handle behind, and no memory,
// which the leak sanitizer tells at the end. Good and failing ones take turns.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "HandleCount.h"
#include "ztsnmp/ztsnmp.h"

int main(int argc, char** argv) {
  const int operations = argc > 1 ? std::atoi(argv[1]) : 2000;
  if (SNMPStartup() != 0) return 1;
  SNMPManager manager;
  Target target;
  target.setAgentAddress("127.0.0.1");
  target.setWriteCommunity("secret");
  const std::string root = "1.3.6.1.4.1.53017.99.";

  const auto run = [&](int i) {
    ReqRespPDU pdu;
    pdu.addVarBind(VarBind{OID((root + (i % 4 == 1 ? "1.99.0" : "1.2.0")).c_str())});
    if (i % 4 == 0) return manager.get(pdu, target) == 0;
    if (i % 4 == 1) return manager.get(pdu, target) == -53 && pdu.getErrorStatus() == 2;
    if (i % 4 == 2) return manager.getNext(pdu, target) == 0;
    pdu.getVarBind(0).setOID(OID((root + "1.8.0").c_str()));
    pdu.getVarBind(0).setValue(OctetString("twenty bytes of text", 20));
    return manager.set(pdu, target) == 0;
  };
  for (int i = 0; i < 8; ++i) run(i);  // what the system keeps for itself is there now
  const unsigned long before = handleCount();
  int failures = 0;
  for (int i = 0; i < operations; ++i) failures += run(i) ? 0 : 1;
  const unsigned long after = handleCount();
  SNMPCleanup();
  std::printf("%d operations, %d failures, %lu handles before, %lu after\n", operations, failures, before, after);
  return failures == 0 && before == after ? 0 : 1;
}
