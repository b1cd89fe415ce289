// Real sockets on the agent port 161: this program runs in a network of its own, where nobody else answers.

#include <gtest/gtest.h>

#include <chrono>

#include "HandleCount.h"
#include "IPInterface.h"
#include "LoopbackAgent.h"
#include "ztsnmp/ztsnmp.h"

namespace {

using Clock = std::chrono::steady_clock;

/// An answer with community "x".
const Bytes kGood =
    fromHex("30 1D 02 01 00 04 01 78 A2 15 02 01 00 02 01 00 02 01 00 30 0A 30 08 06 03 2B 06 01 04 01 61");

class NetworkTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(SNMPStartup(), 0);
    pdu.addVarBind(VarBind{OID("1.3.6.1")});
    target.setAgentAddress("127.0.0.1");
    target.setTimeout(1);
  }
  void TearDown() override { SNMPCleanup(); }

  SNMPManager manager;
  ReqRespPDU pdu;
  Target target;
};

// What a get, a get-next and a set bring is seen in Agent_test.cpp.
TEST_F(NetworkTest, NamesAreLookedUp) {
  LoopbackAgent agent({kGood});
  ASSERT_TRUE(agent.isBound()) << "needs a network of its own, see sim/in-namespace";
  target.setAgentAddress("localhost");
  target.setIPAddressOrder(OrderIPv4Only);
  EXPECT_EQ(manager.get(pdu, target), 0);
  EXPECT_TRUE(target.isAddressResolved());
  EXPECT_STREQ(pdu.getVarBind(0).getValue().toString(), "a");
}

TEST_F(NetworkTest, UnreadableAnswersAreToldFromAgentErrors) {
  LoopbackAgent agent({fromHex("30 00"), Bytes(3000, 0x30)});
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
  for (int i = 0; i < 200; ++i) empty.addVarBind(VarBind{OID("1.3.6.1.2.1.43.11.1.1.6.1")});
  EXPECT_EQ(manager.get(empty, target), -53);  // it is too long now
  EXPECT_EQ(empty.getErrorStatus(), 0);
  EXPECT_TRUE(agent.requests().empty());
}

TEST_F(NetworkTest, AnswersFromElsewhereCount) {
  LoopbackAgent agent({kGood}, "0.0.0.0");  // answers from 127.0.0.1 what 127.0.0.2 was asked
  target.setAgentAddress("127.0.0.2");
  EXPECT_EQ(manager.get(pdu, target), 0);
}

// Systems take numbers with leading zeros for octal: 127.0.0.8 would be asked.
TEST_F(NetworkTest, AddressesAreDecimal) {
  LoopbackAgent agent({kGood}, "127.0.0.10");
  target.setAgentAddress("127.000.0.010");
  EXPECT_EQ(manager.get(pdu, target), 0);
}

TEST_F(NetworkTest, SocketsAreNotInherited) {
  EXPECT_FALSE(isInherited(ztsnmp::Socket::open(ztsnmp::Family::IPv4).handle()));
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
  EXPECT_EQ(transport.transmit(Target(IPAddress("127.0.0.1")), data), 0);
  EXPECT_EQ(transport.broadcast({}), -36);
  EXPECT_EQ(transport.receive({}, received, nullptr), -44);
  transport.setRetryCount(-1);
  EXPECT_EQ(transport.receive(buffer, received, nullptr), -45);
  transport.setRetryCount(0);
  transport.setTimeout(0);
  EXPECT_EQ(transport.receive(buffer, received, nullptr), -37);
}

}  // namespace
