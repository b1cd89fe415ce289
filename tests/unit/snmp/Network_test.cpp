// Real sockets on the agent port 161: this program runs in a network of its own, where nobody else answers.

#include <gtest/gtest.h>

#include <chrono>

#include "HexBytes.h"
#include "IPInterface.h"
#include "Inherited.h"
#include "OwnNetwork.h"
#include "SNMPPeer.h"
#include "SNMPTest.h"

namespace {

using zt::SNMPPeer;

class NetworkTest : public SNMPTest {
 protected:
  NetworkTest() {
    pdu.addVarBind(VarBind{OID("1.3.6.1")});
    target.setAgentAddress("127.0.0.1");
    target.setTimeout(1);
  }
};

// What a get, a get-next and a set bring is seen in Agent_test.cpp.
TEST_F(NetworkTest, FindsTheAgent) {
  const struct {
    const char* address;
    const char* agent;
  } rows[] = {
      {"localhost", "127.0.0.1"},
      {"127.0.0.2", "0.0.0.0"},         // answers from 127.0.0.1 what 127.0.0.2 was asked
      {"127.000.0.010", "127.0.0.10"},  // decimal; systems take leading zeros for octal
  };
  target.setIPAddressOrder(OrderIPv4Only);
  for (const auto& row : rows) {
    SNMPPeer agent(row.agent);
    agent.Set("1.3.6.1", "a");
    target.setAgentAddress(row.address);
    EXPECT_EQ(manager.get(pdu, target), 0) << row.address;
    EXPECT_STREQ(pdu.getVarBind(0).getValue().toString(), "a");
  }
}

TEST_F(NetworkTest, AnAddressThatNothingCanBeSentToIsPassedOver) {
  if (!hasOwnNetwork()) GTEST_SKIP();
  SNMPPeer agent;
  agent.Set("1.3.6.1", "a");
  Target both(IPAddress("127.0.0.1"));
  both.setIPv6Address(IPv6Address("fe80::1"));  // there is no IPv6 here
  both.setIPAddressOrder(OrderIPv6First);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(manager.get(pdu, both), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST_F(NetworkTest, UnreadableAnswersAreToldFromAgentErrors) {
  SNMPPeer agent;
  agent.rawAnswers = {fromHex("30 00"), Bytes(3000, 0x30)};
  for (const char* what : {"malformed", "too long for the buffer"}) {
    EXPECT_EQ(manager.get(pdu, target), -53) << what;
    EXPECT_EQ(pdu.getErrorStatus(), -1) << what;
    EXPECT_EQ(pdu.getErrorIndex(), -1) << what;
  }
}

TEST_F(NetworkTest, SilenceIsWaitedForAndNothingIsSentAgain) {
  SNMPPeer agent;
  agent.silent = {"1.3.6.1"};
  target.setRetryCount(1);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(manager.get(pdu, target), -53);
  const auto passed = std::chrono::steady_clock::now() - start;
  EXPECT_GE(passed, std::chrono::milliseconds(1900));
  EXPECT_LT(passed, std::chrono::milliseconds(2900));
  EXPECT_EQ(pdu.getErrorStatus(), -1);
  EXPECT_EQ(agent.requests.size(), 1U);
}

TEST_F(NetworkTest, BadInputSendsNothing) {
  SNMPPeer agent;
  Target nowhere;
  EXPECT_EQ(manager.get(pdu, nowhere), -23);
  nowhere.setAgentAddress("");
  EXPECT_EQ(manager.get(pdu, nowhere), -32);
  ReqRespPDU empty;
  EXPECT_EQ(manager.get(empty, target), -8);
  for (int i = 0; i < 200; ++i) empty.addVarBind(VarBind{OID("1.3.6.1.2.1.43.11.1.1.6.1")});
  EXPECT_EQ(manager.get(empty, target), -53);  // it is too long now
  EXPECT_EQ(empty.getErrorStatus(), 0);
  EXPECT_TRUE(agent.requests.empty());
}

TEST_F(NetworkTest, SocketsAreNotInherited) {
  EXPECT_FALSE(isInherited(ztsnmp::Socket::open(ztsnmp::Family::IPv4).handle()));
}

TEST_F(NetworkTest, TransportChecksItsInput) {
  const Bytes data(1);
  Bytes buffer(10);
  std::size_t received = 0;
  ztsnmp::IPInterface transport;
  EXPECT_EQ(transport.transmitTo("127.0.0.1", data), -32);
  EXPECT_EQ(transport.broadcast(data), -32);
  EXPECT_EQ(transport.receive(buffer, received, nullptr), -32);

  for (int again = 0; again < 2; ++again) EXPECT_EQ(transport.initialize(), 0);
  // Names are resolved earlier; there is no socket for the last address.
  for (const char* address : {static_cast<const char*>(nullptr), "printer", "fe80::1%1"}) {
    EXPECT_EQ(transport.transmitTo(address, data), -40);
  }
  EXPECT_EQ(transport.transmitTo("127.0.0.1", {}), -40);
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
