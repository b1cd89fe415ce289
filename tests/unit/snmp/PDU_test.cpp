#include <gtest/gtest.h>

#include "PDUText.h"

namespace {

TEST(VarBind, HoldsWhatIsAValue) {
  VarBind binding = bound("1.3", IPv6Address("fe80::1"));
  binding = VarBind(binding);
  EXPECT_STREQ(binding.getValue().toString(), "fe80::1");  // not an IPAddress, which has the same tag
  EXPECT_EQ(binding.setValue(PhysAddress("000000000001")), -16);
  EXPECT_EQ(binding.setValue(IPXAddress()), -16);
  EXPECT_STREQ(binding.getValue().toString(), "fe80::1");
  EXPECT_EQ(binding.setValue(Null()), 0);
  for (const VarBind& empty : {binding, VarBind()}) EXPECT_EQ(empty.getValue().getDataType(), DataTypeNull);
  EXPECT_TRUE(binding.hasValue());
  EXPECT_FALSE(VarBind().hasValue());
}

TEST(ReqRespPDU, ChecksItsBindings) {
  EXPECT_EQ(ReqRespPDU().isValid(), -8);
  ReqRespPDU pdu;
  const VarBind good{OID("1.3")};
  ASSERT_EQ(pdu.addVarBind(good), 0);
  // An empty text is valid by itself, and not in a request.
  for (const VarBind& bad : {bound("1.3", OctetString()), bound("1.3", IPAddress())}) {
    EXPECT_EQ(pdu.addVarBind(bad), -9);
    EXPECT_EQ(pdu.setVarBind(0, bad), -9);
    EXPECT_EQ(pdu.setVarBindList(&bad, 1), -9);
    EXPECT_EQ(ReqRespPDU(&bad, 1).getVarBindCount(), 0);
  }
  EXPECT_EQ(pdu.setVarBind(1, good), -9);
  EXPECT_EQ(pdu.setVarBindList(nullptr, 1), -9);
  EXPECT_EQ(pdu.setVarBindList(&good, 0), -9);
  EXPECT_EQ(pdu.isValid(), 0);
  pdu.getVarBind(0).setValue(OctetString());
  EXPECT_EQ(pdu.isValid(), -58);
}

TEST(ReqRespPDU, KeepsItsListInOrder) {
  ReqRespPDU pdu;
  for (const char* name : {"1.1", "1.2", "1.3"}) EXPECT_EQ(pdu.addVarBind(VarBind{OID(name)}), 0);
  EXPECT_EQ(pdu.addVarBind(pdu.getVarBind(0)), 0);  // one of its own
  ReqRespPDU copy(pdu);
  EXPECT_EQ(copy.deleteVarBind(1), 0);
  EXPECT_EQ(copy.deleteVarBind(3), -9);
  EXPECT_EQ(textOf(copy), " 1.1= 1.3= 1.1=");
  EXPECT_EQ(copy.setVarBindList(pdu.getVarBindList() + 1, 2), 0);
  EXPECT_EQ(copy.setVarBindList(copy.getVarBindList(), 2), 0);
  EXPECT_EQ(textOf(copy), " 1.2= 1.3=");
  EXPECT_EQ(textOf(pdu), " 1.1= 1.2= 1.3= 1.1=");
}

TEST(SNMPManager, HasNoTrapService) {
  SNMPManager manager;
  ReqRespPDU pdu;
  const SNMPManager::TrapCallback onTrap = [](TrapPDU&) {};
  EXPECT_EQ(manager._register(nullptr, onTrap), -85);
  EXPECT_EQ(manager._register("", onTrap), -85);
  EXPECT_EQ(manager._register("program", nullptr), -85);
  EXPECT_EQ(manager._register("program", onTrap), -86);
  EXPECT_EQ(manager.unregister(), -87);
  EXPECT_EQ(manager.keepAlive(pdu, "program", 1), -1);
  EXPECT_EQ(TrapPDU().isValid(), -1);
}

}  // namespace
