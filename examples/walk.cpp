// walk HOST OID [ROWS]: lists all objects below a name.

#include "Walk.h"

#include <cstdio>
#include <cstdlib>

#include "Text.h"

int main(int argc, char** argv) {
  const int mostRows = argc == 4 ? std::atoi(argv[3]) : kMostRows;
  if (argc < 3 || argc > 4 || mostRows < 1 || OID::isValidValue(argv[2]) != StatusSuccess) {
    std::fprintf(stderr, "usage: walk HOST OID [ROWS]\nIt stops after so many ROWS, %d unless given.\n", kMostRows);
    return 2;
  }
  Target target;
  target.setAgentAddress(argv[1]);

  if (SNMPStartup() != 0) return 1;
  SNMPManager manager;
  const bool complete = walk(manager, target, argv[2], mostRows, [](const VarBind& binding) {
    std::printf("%s = %s\n", binding.getOID().getValue(), escaped(binding.getValue()).c_str());
  });
  SNMPCleanup();
  return complete ? 0 : 1;
}
