// Real sockets on the agent port 161: this program runs in a network of its own, where nobody else answers.

#include <gtest/gtest.h>

#include <chrono>

#include "IPInterface.h"
#include "LoopbackAgent.h"
#include "ztsnmp/ztsnmp.h"

namespace {

using Clock = std::chrono::steady_clock;

const char* const kGetRequest =
    "30 21 02 01 00 04 06 70 75 62 6C 69 63 A0 14 02 01 00 02 01 00 02 01 00 30 09 30 07 06 03 2B 06 01 05 00";

/// An answer with community "x" and the given error fields and bindings.
Bytes answer(const char* bindings, const char* errors = "02 01 00 02 01 00") {
  return element(0x30, fromHex("02 01 00 04 01 78") +
                           element(0xA2, fromHex("02 01 00") + fromHex(errors) + element(0x30, fromHex(bindings))));
}

const Bytes kGood = answer("30 0A 06 03 2B 06 01 04 03 61 62 63");

class NetworkTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(SNMPStartup(), 0);
    pdu.addVarBind(VarBind{OID("1.3.6.1")});
    target.setAgentAddress("127.0.0.1");
    target.setTimeout(1);
  }
  void TearDown() override { SNMPCleanup(); }

  std::string text() { return pdu.getVarBind(0).getValue().toString(); }

  SNMPManager manager;
  ReqRespPDU pdu;
  Target target;
};

TEST_F(NetworkTest, GetBringsTheValue) {
  LoopbackAgent agent({kGood});
  ASSERT_TRUE(agent.isBound()) << "needs a network of its own, see sim/in-namespace";
  EXPECT_EQ(manager.get(pdu, target), 0);
  EXPECT_EQ(text(), "abc");
  EXPECT_EQ(agent.requests(), std::vector<std::string>{kGetRequest});
  EXPECT_TRUE(target.isAddressResolved());
}

TEST_F(NetworkTest, GetNextBringsTheNextName) {
  LoopbackAgent agent({answer("30 0B 06 04 2B 06 01 07 04 03 61 62 63")});
  EXPECT_EQ(manager.getNext(pdu, target), 0);
  EXPECT_STREQ(pdu.getVarBind(0).getOID().getValue(), "1.3.6.1.7");
}

TEST_F(NetworkTest, SetGoesWithTheWriteCommunity) {
  LoopbackAgent agent({answer("30 08 06 03 2B 06 01 02 01 07")});
  target.setWriteCommunity("w");
  pdu.getVarBind(0).setValue(Integer(7));
  EXPECT_EQ(manager.set(pdu, target), 0);
  EXPECT_EQ(agent.requests(), std::vector<std::string>{"30 1D 02 01 00 04 01 77 A3 15 02 01 00 02 01 00 02 01 00 30 0A "
                                                       "30 08 06 03 2B 06 01 02 01 07"});
}

TEST_F(NetworkTest, NamesAreLookedUp) {
  LoopbackAgent agent({kGood});
  target.setAgentAddress("localhost");
  target.setIPAddressOrder(OrderIPv4Only);
  EXPECT_EQ(manager.get(pdu, target), 0);
}

TEST_F(NetworkTest, AgentErrorsAreToldFromUnreadableAnswers) {
  LoopbackAgent agent({answer("30 07 06 03 2B 06 01 05 00", "02 01 02 02 01 01"), fromHex("30 00"), Bytes(3000, 0x30)});
  EXPECT_EQ(manager.get(pdu, target), -53);
  EXPECT_EQ(pdu.getErrorStatus(), 2);
  EXPECT_EQ(pdu.getErrorIndex(), 1);
  for (const char* what : {"malformed", "too long for the buffer"}) {
    EXPECT_EQ(manager.get(pdu, target), -53) << what;
    EXPECT_EQ(pdu.getErrorStatus(), -1) << what;
    EXPECT_EQ(pdu.getErrorIndex(), -1) << what;
  }
}

TEST_F(NetworkTest, SilenceIsWaitedForAndNothingIsSentAgain) {
  LoopbackAgent agent({});
  target.setRetryCount(1);
  const auto start = Clock::now();
  EXPECT_EQ(manager.get(pdu, target), -53);
  const auto passed = Clock::now() - start;
  EXPECT_GE(passed, std::chrono::milliseconds(1900));
  EXPECT_LT(passed, std::chrono::milliseconds(2900));
  EXPECT_EQ(pdu.getErrorStatus(), -1);
  EXPECT_EQ(agent.requests().size(), 1U);
}

TEST_F(NetworkTest, BadInputSendsNothing) {
  LoopbackAgent agent({});
  Target nowhere;
  EXPECT_EQ(manager.get(pdu, nowhere), -23);
  Target unnamed;
  unnamed.setAgentAddress("");
  EXPECT_EQ(manager.get(pdu, unnamed), -32);
  ReqRespPDU empty;
  EXPECT_EQ(manager.get(empty, target), -8);
  pdu.getVarBind(0).setValue(OctetString());
  EXPECT_EQ(manager.set(pdu, target), -58);
  EXPECT_TRUE(agent.requests().empty());
}

TEST_F(NetworkTest, AnswersFromElsewhereCount) {
  LoopbackAgent agent({kGood}, "0.0.0.0");  // answers from 127.0.0.1 what 127.0.0.2 was asked
  target.setAgentAddress("127.0.0.2");
  EXPECT_EQ(manager.get(pdu, target), 0);
}

TEST_F(NetworkTest, TransportChecksItsInput) {
  const Bytes data(1);
  Bytes buffer(10);
  std::size_t received = 0;
  ztsnmp::IPInterface transport;
  EXPECT_EQ(transport.getAddressingMode(), 2);
  EXPECT_EQ(transport.getProtocol(), -2002);
  EXPECT_EQ(transport.transmitTo("127.0.0.1", data), -32);
  EXPECT_EQ(transport.broadcast(data), -32);
  EXPECT_EQ(transport.receive(buffer, received, nullptr), -32);

  ASSERT_EQ(transport.initialize(), 0);
  EXPECT_EQ(transport.initialize(), 0);
  EXPECT_EQ(transport.transmitTo(nullptr, data), -40);
  EXPECT_EQ(transport.transmitTo("127.0.0.1", {}), -40);
  EXPECT_EQ(transport.transmitTo("printer", data), -40);    // names are resolved earlier
  EXPECT_EQ(transport.transmitTo("fe80::1%1", data), -40);  // no socket of that family here
  EXPECT_EQ(transport.transmit(Target(), data), -40);
  EXPECT_EQ(transport.broadcast({}), -36);
  EXPECT_EQ(transport.receive({}, received, nullptr), -44);
  transport.setRetryCount(-1);
  EXPECT_EQ(transport.receive(buffer, received, nullptr), -45);
  transport.setRetryCount(0);
  transport.setTimeout(0);
  EXPECT_EQ(transport.receive(buffer, received, nullptr), -37);
}

TEST_F(NetworkTest, TransportNamesTheSender) {
  LoopbackAgent agent({Bytes(5, 7)});
  ztsnmp::IPInterface transport;
  ASSERT_EQ(transport.initialize(), 0);
  EXPECT_EQ(transport.transmit(Target(IPAddress("127.0.0.1")), Bytes(1)), 0);
  Bytes buffer(10);
  std::size_t received = 0;
  std::string sender;
  EXPECT_EQ(transport.receive(buffer, received, &sender), 0);
  EXPECT_EQ(received, 5U);
  EXPECT_EQ(sender, "127.0.0.1");
}

}  // namespace
