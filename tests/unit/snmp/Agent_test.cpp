// A real SNMP agent, started by sim/with_snmpd.py, which also compares the PACKET lines with what was on the
// wire. With --gtest_repeat=COUNT, and without the comparison, this shows what many operations leave behind: handles
// are counted here, memory by the leak sanitizer.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "PDUText.h"
#include "SNMPTest.h"
#include "Sockets.h"

namespace {

const std::string kRoot = "1.3.6.1.4.1.53017.99.";

class AgentTest : public SNMPTest {
 protected:
  AgentTest() {
    target.setAgentAddress("127.0.0.1");
    target.setWriteCommunity("secret");
  }
  void TearDown() override {
    // A new handle gets the lowest free number. After the first test the system has what it keeps for itself.
    static const auto first = ztsnmp::Socket::open(ztsnmp::Family::IPv4).handle();
    EXPECT_EQ(ztsnmp::Socket::open(ztsnmp::Family::IPv4).handle(), first) << "a handle is left behind";
  }

  void ask(const std::string& name) { pdu.addVarBind(VarBind{OID((kRoot + name).c_str())}); }

  int get() { return told(&SNMPManager::get, "get-request", "public"); }
  int getNext() { return told(&SNMPManager::getNext, "get-next-request", "public"); }
  int set() { return told(&SNMPManager::set, "set-request", target.getWriteCommunity()); }

 private:
  int told(int (SNMPManager::*operation)(ReqRespPDU&, Target&) noexcept, const std::string& kind,
           const char* community) {
    const std::string sent = textOf(pdu, kind == "set-request");
    std::printf("PACKET %s version 0 id 0 community %s error 0 0%s\n", kind.c_str(), community, sent.c_str());
    const int status = (manager.*operation)(pdu, target);
    std::printf("PACKET get-response version 0 id 0 community %s error %d %d%s\n", community, pdu.getErrorStatus(),
                pdu.getErrorIndex(), textOf(pdu).c_str());
    return status;
  }
};

TEST_F(AgentTest, GetsEachTypeInOneRequest) {
  for (int i = 1; i <= 6; ++i) ask("1." + std::to_string(i) + ".0");
  pdu.addVarBind(VarBind{OID("1.3.6.1.2.1.4.20.1.1.127.0.0.1")});
  EXPECT_EQ(get(), 0);
  std::string values;
  for (unsigned i = 0; i < 7; ++i) {
    const SNMPDataType& value = pdu.getVarBind(i).getValue();
    values += std::to_string(value.getDataType()) + ':' + value.toString() + ' ';
  }
  EXPECT_EQ(values,
            "2:-5 4:abc def 65:4294967295 66:2147483648 67:8640000 6:1.3.6.1.4.1.53017.200.70000 64:127.0.0.1 ");
}

TEST_F(AgentTest, TellsWhichObjectThereIsNot) {
  for (const char* name : {"1.1.0", "1.99.0", "1.2.0"}) ask(name);
  EXPECT_EQ(get(), -53);
  EXPECT_EQ(pdu.getErrorStatus(), 2);  // noSuchName
  EXPECT_EQ(pdu.getErrorIndex(), 2);
}

TEST_F(AgentTest, WalksATableWithGaps) {
  ask("2");
  std::string rows;
  while (getNext() == 0 && textOf(pdu).starts_with(' ' + kRoot + "2.")) {
    rows += textOf(pdu).substr(1 + kRoot.size()) + ' ';
    pdu.getVarBind(0).setValue(Null());  // an empty text would not be sent
  }
  EXPECT_EQ(rows, "2.1.1=10 2.1.3=30 2.1.300=70 2.2.1= 2.2.3=third ");
}

TEST_F(AgentTest, SetsWhatMayBeSet) {
  ask("1.7.0");
  ask("1.8.0");
  pdu.getVarBind(0).setValue(Integer(-70000));
  pdu.getVarBind(1).setValue(OctetString("new text", 8));
  EXPECT_EQ(set(), 0);
  EXPECT_EQ(get(), 0);
  EXPECT_EQ(textOf(pdu), ' ' + kRoot + "1.7.0=-70000 " + kRoot + "1.8.0=new text");
  target.setWriteCommunity("public");
  EXPECT_EQ(set(), -53);
  EXPECT_GT(pdu.getErrorStatus(), 0);
}

}  // namespace
