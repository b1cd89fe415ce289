// A real SNMP agent, started by sim/with_snmpd.py, which also compares the PACKET lines with what was on the
// wire.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "ztsnmp/ztsnmp.h"

namespace {

const std::string kRoot = "1.3.6.1.4.1.53017.99.";

class AgentTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(SNMPStartup(), 0);
    target.setAgentAddress("127.0.0.1");
    target.setWriteCommunity("secret");
  }
  void TearDown() override { SNMPCleanup(); }

  static VarBind named(const std::string& name) { return VarBind{OID((kRoot + name).c_str())}; }

  int get(ReqRespPDU& pdu) { return told(&SNMPManager::get, "get-request", "public", pdu); }
  int getNext(ReqRespPDU& pdu) { return told(&SNMPManager::getNext, "get-next-request", "public", pdu); }
  int set(ReqRespPDU& pdu) { return told(&SNMPManager::set, "set-request", target.getWriteCommunity(), pdu); }

  /// "1.0=abc " and so on, the names without the root.
  static std::string textOf(const ReqRespPDU& pdu) {
    std::string text;
    for (int i = 0; i < pdu.getVarBindCount(); ++i) {
      const VarBind& binding = pdu.getVarBind(static_cast<unsigned>(i));
      text += std::string(binding.getOID().getValue()).substr(kRoot.size()) + '=' + binding.getValue().toString() + ' ';
    }
    return text;
  }

  SNMPManager manager;
  Target target;

 private:
  using Operation = int (SNMPManager::*)(ReqRespPDU&, Target&) noexcept;

  static void tell(const char* kind, const char* community, const ReqRespPDU& pdu, bool withValues) {
    std::printf("PACKET %s version 0 id 0 community %s error %d %d", kind, community, pdu.getErrorStatus(),
                pdu.getErrorIndex());
    for (int i = 0; i < pdu.getVarBindCount(); ++i) {
      const VarBind& binding = pdu.getVarBind(static_cast<unsigned>(i));
      std::printf(" %s=%s", binding.getOID().getValue(), withValues ? binding.getValue().toString() : "");
    }
    std::printf("\n");
  }

  int told(Operation operation, const char* kind, const char* community, ReqRespPDU& pdu) {
    const bool sendsValues = operation == &SNMPManager::set;
    tell(kind, community, ReqRespPDU(pdu.getVarBindList(), pdu.getVarBindCount()), sendsValues);
    const int status = (manager.*operation)(pdu, target);
    tell("get-response", community, pdu, true);
    return status;
  }
};

TEST_F(AgentTest, GetsEachTypeInOneRequest) {
  ReqRespPDU pdu;
  for (int i = 1; i <= 6; ++i) pdu.addVarBind(named("1." + std::to_string(i) + ".0"));
  pdu.addVarBind(VarBind{OID("1.3.6.1.2.1.4.20.1.1.127.0.0.1")});
  EXPECT_EQ(get(pdu), 0);
  const struct {
    int type;
    const char* text;
  } rows[] = {
      {DataTypeInteger, "-5"},          {DataTypeOctetString, "abc def"}, {DataTypeCounter, "4294967295"},
      {DataTypeGauge, "2147483648"},    {DataTypeTimeTicks, "8640000"},   {DataTypeOID, "1.3.6.1.4.1.53017.200.70000"},
      {DataTypeIPAddress, "127.0.0.1"},
  };
  for (unsigned i = 0; i < std::size(rows); ++i) {
    EXPECT_EQ(pdu.getVarBind(i).getValue().getDataType(), rows[i].type) << i;
    EXPECT_STREQ(pdu.getVarBind(i).getValue().toString(), rows[i].text) << i;
  }
}

TEST_F(AgentTest, TellsWhichObjectThereIsNot) {
  ReqRespPDU pdu;
  for (const char* name : {"1.1.0", "1.99.0", "1.2.0"}) pdu.addVarBind(named(name));
  EXPECT_EQ(get(pdu), -53);
  EXPECT_EQ(pdu.getErrorStatus(), 2);  // noSuchName
  EXPECT_EQ(pdu.getErrorIndex(), 2);
  EXPECT_EQ(pdu.deleteVarBind(1), 0);
  EXPECT_EQ(get(pdu), 0);
  EXPECT_EQ(textOf(pdu), "1.1.0=-5 1.2.0=abc def ");
}

TEST_F(AgentTest, WalksATableWithGaps) {
  ReqRespPDU pdu;
  pdu.addVarBind(named("2"));
  std::string rows;
  while (getNext(pdu) == 0 && std::string(pdu.getVarBind(0).getOID().getValue()).starts_with(kRoot + "2.")) {
    rows += textOf(pdu);
    pdu.getVarBind(0).setValue(Null());  // an empty text would not be sent
  }
  EXPECT_EQ(rows, "2.1.1=10 2.1.3=30 2.1.300=70 2.2.1= 2.2.3=third ");
}

TEST_F(AgentTest, SetsWhatMayBeSet) {
  ReqRespPDU pdu;
  pdu.addVarBind(named("1.7.0"));
  pdu.addVarBind(named("1.8.0"));
  pdu.getVarBind(0).setValue(Integer(-70000));
  pdu.getVarBind(1).setValue(OctetString("new text", 8));
  EXPECT_EQ(set(pdu), 0);
  EXPECT_EQ(get(pdu), 0);
  EXPECT_EQ(textOf(pdu), "1.7.0=-70000 1.8.0=new text ");

  target.setWriteCommunity("public");
  pdu.getVarBind(0).setValue(Integer(8));
  EXPECT_EQ(set(pdu), -53);
  EXPECT_GT(pdu.getErrorStatus(), 0);
}

}  // namespace
