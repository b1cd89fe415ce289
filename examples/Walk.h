#pragma once

#include <ztsnmp/ztsnmp.h>

#include <functional>
#include <string>

/// walk hands each object below a name to `visit`, in the agent's order. It answers whether the walk came to its end:
/// false when the agent fell silent on the way, or led in circles.
inline bool walk(SNMPManager& manager, Target& target, const std::string& root,
                 const std::function<void(const VarBind&)>& visit) {
  constexpr int kNoSuchName = 2;  // how an agent says that nothing follows
  constexpr int kMostRows = 10000;
  ReqRespPDU pdu;
  pdu.addVarBind(VarBind(OID(root.c_str())));
  VarBind& binding = pdu.getVarBind(0);
  for (int row = 0; row < kMostRows; ++row) {
    const std::string before = binding.getOID().getValue();
    if (manager.getNext(pdu, target) != StatusSuccess) return pdu.getErrorStatus() == kNoSuchName;
    const std::string name = binding.getOID().getValue();
    if (!name.starts_with(root + '.')) return true;
    if (name == before) return false;
    visit(binding);
    // The next request must not carry the answer: an empty text in it would be refused.
    binding.setValue(Null());
  }
  return false;
}
