// walk HOST OID: lists all objects below a name.

#include "Walk.h"

#include <cstdio>

int main(int argc, char** argv) {
  if (argc != 3 || OID::isValidValue(argv[2]) != StatusSuccess) {
    std::fputs("usage: walk HOST OID\n", stderr);
    return 2;
  }
  Target target;
  target.setAgentAddress(argv[1]);

  if (SNMPStartup() != 0) return 1;
  SNMPManager manager;
  const bool complete = walk(manager, target, argv[2], [](const VarBind& binding) {
    std::printf("%s = %s\n", binding.getOID().getValue(), binding.getValue().toString());
  });
  if (!complete) std::fputs("the walk broke off\n", stderr);
  SNMPCleanup();
  return complete ? 0 : 1;
}
