#pragma once

#include <gtest/gtest.h>

#include <string>

#include "ztsnmp/ztsnmp.h"

/// bound is a binding with a value.
inline VarBind bound(const char* name, const SNMPDataType& value) {
  VarBind binding{OID(name)};
  EXPECT_EQ(binding.setValue(value), 0) << name;
  return binding;
}

/// textOf lists the bindings: " 1.3.6.1=5 1.3.6.2=abc".
template <typename PDU>
std::string textOf(const PDU& pdu, bool withValues = true) {
  std::string text;
  for (int i = 0; i < pdu.getVarBindCount(); ++i) {
    const VarBind& binding = pdu.getVarBind(static_cast<unsigned>(i));
    text += std::string(" ") + binding.getOID().getValue() + '=' + (withValues ? binding.getValue().toString() : "");
  }
  return text;
}
