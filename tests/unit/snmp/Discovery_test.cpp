// Discovery in the network of sim/with_printers.py, which tells who is there.

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "SNMPTest.h"

namespace {

const std::string kSysName = "1.3.6.1.2.1.1.5.0";

// The callbacks are plain functions.
std::map<std::string, std::string> answers;  // by sender, without its zone
std::string secondPrinter;                   // its IPv6 address as it came
std::vector<int> statuses;

void keepAnswer(ReqRespPDU& answer, NetworkAddress* sender) {
  const std::string address = sender->getValue();
  const VarBind& binding = answer.getVarBind(0);
  answers[address.substr(0, address.find('%'))] =
      std::string(binding.getOID().getValue()) + ' ' + binding.getValue().toString();
  if (address.starts_with("fe80::102%")) secondPrinter = address;
}

void keepStatus(EnumDetectionStatType status) {
  if (statuses.empty() || statuses.back() != status) statuses.push_back(status);
}

class DiscoveryTest : public SNMPTest {
 protected:
  DiscoveryTest() {
    answers.clear();
    statuses.clear();
    pdu.addVarBind(VarBind{OID(kSysName.c_str())});
  }
};

TEST_F(DiscoveryTest, FindsAllPrintersOverBothProtocols) {
  std::map<std::string, std::string> all;
  for (const std::string number : {"1", "2", "3", "4", "5"}) {
    all[(number == "5" ? "10.9.5.10" : "10.9.0.10") + number] = kSysName + " printer-" + number;
    all["fe80::10" + number] = kSysName + " printer-" + number;
  }
  EXPECT_EQ(manager.broadcast(pdu, "public", keepAnswer, keepStatus), 0);
  EXPECT_EQ(answers, all);
  EXPECT_EQ(statuses, (std::vector<int>{DetectionStarted, DetectionAnswered, DetectionFinished}));

  target.setIPv6Address(IPv6Address(secondPrinter.c_str()));
  EXPECT_EQ(manager.get(pdu, target), 0);
  EXPECT_STREQ(pdu.getVarBind(0).getValue().toString(), "printer-2");
}

TEST_F(DiscoveryTest, AsksForTheNextObjectsAndWaitsAsLongAsItIsTold) {
  pdu.getVarBind(0).setOID(OID("1.3.6.1.2.1.1.5"));
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(manager.broadcast(pdu, nullptr, keepAnswer, nullptr, PDUGetNextRequest, 1), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(2500));
  EXPECT_EQ(answers["10.9.0.103"], kSysName + " printer-3");
}

TEST_F(DiscoveryTest, HearsNobodyWithAForeignCommunity) {
  EXPECT_EQ(manager.broadcast(pdu, "nobody", keepAnswer, keepStatus, 1), 0);
  EXPECT_TRUE(answers.empty());
  EXPECT_EQ(statuses, (std::vector<int>{DetectionStarted, DetectionFinished}));
}

TEST_F(DiscoveryTest, ChecksItsInput) {
  ReqRespPDU empty;
  EXPECT_EQ(manager.broadcast(pdu, nullptr, nullptr, nullptr), -56);
  EXPECT_EQ(manager.broadcast(empty, nullptr, keepAnswer, nullptr), -8);
  EXPECT_EQ(manager.broadcast(pdu, "", keepAnswer, nullptr), -51);
  EXPECT_EQ(manager.broadcast(pdu, nullptr, keepAnswer, nullptr, 0), -19);
  EXPECT_EQ(manager.broadcast(pdu, nullptr, keepAnswer, nullptr, PDUSetRequest, 1), -10);
  int count = -1;
  IPAddress list[1];
  EXPECT_EQ(manager.detectHPPrinters(list, &count), -1);
  EXPECT_EQ(manager.detectHPPrinters(nullptr, &count), -1);
  EXPECT_EQ(manager.detectHPPrinters(list, nullptr), -1);
}

TEST_F(DiscoveryTest, DetectsThePrintersOfOneMaker) {
  IPAddress list[10];
  int count = 10;
  EXPECT_EQ(manager.detectHPPrinters(list, &count), 0);
  ASSERT_EQ(count, 2);
  EXPECT_EQ((std::set<std::string>{list[0].getValue(), list[1].getValue()}),
            (std::set<std::string>{"10.9.0.102", "10.9.5.105"}));
  count = 1;
  EXPECT_EQ(manager.detectHPPrinters(list, &count), 0);
  EXPECT_EQ(count, 1);
}

TEST_F(DiscoveryTest, KnowsTheProtocolsOfThisMachine) { EXPECT_EQ(manager.getAvailableProtocols(), ProtocolIP); }

}  // namespace
