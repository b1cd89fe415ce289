#pragma once

#include <ztsnmp/ztsnmp.h>

#include <cstdio>
#include <functional>
#include <set>
#include <string>

constexpr int kMostRows = 10000;  // unless somebody wants another limit

/// walk hands each object below a name to `visit`, in the agent's order and not more of them than `mostRows`. It
/// returns whether it came to the end of what there is; if not, it has said on stderr why.
inline bool walk(SNMPManager& manager, Target& target, const std::string& root, int mostRows,
                 const std::function<void(const VarBind&)>& visit) {
  constexpr int kNoSuchName = 2;  // how an agent says that nothing follows
  ReqRespPDU pdu;
  pdu.addVarBind(VarBind(OID(root.c_str())));
  VarBind& binding = pdu.getVarBind(0);
  std::set<std::string> seen;
  for (int row = 0;; ++row) {
    if (manager.getNext(pdu, target) != StatusSuccess) {
      if (pdu.getErrorStatus() == kNoSuchName) return true;
      std::fputs("the agent does not answer\n", stderr);
      return false;
    }
    const std::string name = binding.getOID().getValue();
    if (!name.starts_with(root + '.')) return true;
    if (!seen.insert(name).second) {
      std::fprintf(stderr, "the agent leads in circles, back to %s\n", name.c_str());
      return false;
    }
    if (row == mostRows) {
      std::fprintf(stderr, "stopped after %d rows\n", mostRows);
      return false;
    }
    visit(binding);
    // The next request must not carry the answer: an empty text in it would be refused.
    binding.setValue(Null());
  }
}
