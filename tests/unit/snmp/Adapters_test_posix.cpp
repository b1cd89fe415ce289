// Adapters of this machine: this program runs in a network of its own, where it may make some.

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <string>

#include "HexBytes.h"
#include "IPInterface.h"
#include "OwnNetwork.h"
#include "SNMPTest.h"

namespace {

bool run(const std::string& commands) { return std::system(commands.c_str()) == 0; }

// Gives an adapter an address. The system finishes that behind the command's back: what is sent to the address before
// its route is there gets lost.
bool give(const std::string& device, const std::string& address) {
  return run("ip addr add " + address + "/64 dev " + device +
             " nodad && until ip -6 route show table local | grep -q '" + address + " dev " + device + "'; do :; done");
}

// Two adapters that are joined, "near" and "far".
class Adapters : public SNMPTest {
 protected:
  void SetUp() override {
    if (!hasOwnNetwork()) GTEST_SKIP();
    ASSERT_TRUE(run("ip link add near type veth peer name far"));
    for (const std::string device : {"near", "far"}) EXPECT_TRUE(run("ip link set " + device + " addrgenmode none up"));
    ASSERT_TRUE(give("near", "fe80::a1"));
  }
  void TearDown() override { EXPECT_TRUE(IsSkipped() || run("ip link del near")); }
};

// An adapter and its VLAN have one link-local address. Here the loopback and "near" have; the agent is "far".
TEST_F(Adapters, OfOneLinkLocalAddressAreToldApart) {
  ASSERT_TRUE(give("lo", "fe80::a1"));
  {
    ztsnmp::IPInterface transport;
    EXPECT_EQ(transport.initialize(), 0);

    EXPECT_TRUE(give("far", "fe80::101"));
    std::array agent{ztsnmp::Socket::open(ztsnmp::Family::IPv6)};
    ztsnmp::SocketAddress address;
    EXPECT_EQ(ztsnmp::resolveNumeric("fe80::101%far", "161", address), ztsnmp::LookupResult::Found);
    EXPECT_TRUE(agent[0].bind(address));

    transport.setRetryCount(0);
    transport.setTimeout(5);
    EXPECT_EQ(transport.transmitTo("fe80::101%near", Bytes(1)), 0);
    Bytes buffer(10);
    std::size_t received = 0;
    ztsnmp::ReadySet ready;
    for (int requests = 0; requests < 2; ++requests) {  // one from each of the two sockets
      EXPECT_EQ(ztsnmp::waitForSockets(agent, ztsnmp::WaitFor::Readable, std::chrono::seconds(5), ready),
                ztsnmp::WaitResult::Ready);
      EXPECT_TRUE(agent[0].receiveFrom(buffer, received, address));
      EXPECT_TRUE(agent[0].sendTo(Bytes(1), address));
    }
    EXPECT_EQ(transport.receive(buffer, received, nullptr), 0);
  }
  EXPECT_TRUE(run("ip addr del fe80::a1/64 dev lo"));
}

TEST_F(Adapters, OfVeryManyAddressesAreUsedInPart) {
  EXPECT_TRUE(run("for i in $(seq 60); do ip addr add 127.0.1.$i/8 dev lo; done"));
  ztsnmp::IPInterface transport;
  EXPECT_EQ(transport.initialize(), 0);
  EXPECT_EQ(transport.transmitTo("127.0.0.1", Bytes(1)), 0);
  EXPECT_TRUE(run("for i in $(seq 60); do ip addr del 127.0.1.$i/8 dev lo; done"));
}

// "near" has an address, and no way to all hosts; the loopback has one, where nobody answers.
TEST_F(Adapters, ThatReachNobodyDoNotFailABroadcast) {
  static std::string told;
  pdu.addVarBind(VarBind{OID("1.3.6.1")});
  const auto ignore = [](ReqRespPDU&, NetworkAddress*) {};
  const auto keep = [](EnumDetectionStatType status) { told += std::to_string(status); };
  int count = 0;
  IPAddress none;
  EXPECT_TRUE(run("ip addr del 127.0.0.1/8 dev lo && ip -6 route del multicast ff00::/8 dev near table local"));
  EXPECT_EQ(manager.broadcast(pdu, nullptr, ignore, keep, 1), -57);
  EXPECT_TRUE(run("ip addr add 127.0.0.1/8 dev lo"));
  EXPECT_EQ(manager.broadcast(pdu, nullptr, ignore, keep, 1), 0);
  EXPECT_EQ(manager.detectHPPrinters(&none, &count), 0);
  EXPECT_EQ(told, "302");  // failed, without a wait; started, finished
}

}  // namespace
