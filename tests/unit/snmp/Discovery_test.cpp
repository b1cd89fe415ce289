// Discovery in the network of sim/with_printers.py, which tells who is there.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <string>
#include <vector>

#include "ztsnmp/ztsnmp.h"

namespace {

using testing::ElementsAre;
using testing::Pair;

constexpr const char* kSysName = "1.3.6.1.2.1.1.5.0";

// The callbacks are plain functions.
std::map<std::string, std::string> answers;  // by sender
std::vector<int> statuses;

void keepAnswer(ReqRespPDU& answer, NetworkAddress* sender) {
  const VarBind& binding = answer.getVarBind(0);
  answers[sender->getValue()] = std::string(binding.getOID().getValue()) + ' ' + binding.getValue().toString();
}

void keepStatus(EnumDetectionStatType status) {
  if (statuses.empty() || statuses.back() != status) statuses.push_back(status);
}

class DiscoveryTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(SNMPStartup(), 0);
    answers.clear();
    statuses.clear();
    pdu.addVarBind(VarBind{OID(kSysName)});
  }
  void TearDown() override { SNMPCleanup(); }

  static std::map<std::string, std::string> answersOf(bool ipv6) {
    std::map<std::string, std::string> some;
    for (const auto& [sender, text] : answers) {
      if (sender.starts_with("fe80:") == ipv6) some.emplace(sender.substr(0, sender.find('%')), text);
    }
    return some;
  }

  SNMPManager manager;
  ReqRespPDU pdu;
};

TEST_F(DiscoveryTest, FindsAllPrintersOverBothProtocols) {
  const std::string name = std::string(kSysName) + " printer-";
  EXPECT_EQ(manager.broadcast(pdu, "public", keepAnswer, keepStatus), 0);
  EXPECT_THAT(answersOf(false), ElementsAre(Pair("10.9.0.101", name + '1'), Pair("10.9.0.102", name + '2'),
                                            Pair("10.9.0.103", name + '3'), Pair("10.9.0.104", name + '4'),
                                            Pair("10.9.5.105", name + '5')));
  EXPECT_THAT(answersOf(true),
              ElementsAre(Pair("fe80::101", name + '1'), Pair("fe80::102", name + '2'), Pair("fe80::103", name + '3'),
                          Pair("fe80::104", name + '4'), Pair("fe80::105", name + '5')));
  EXPECT_THAT(statuses, ElementsAre(DetectionStarted, DetectionAnswered, DetectionFinished));

  const auto second = answers.lower_bound("fe80::102%");  // each sender with its zone
  Target target{IPv6Address(second->first.c_str())};
  EXPECT_EQ(manager.get(pdu, target), 0);
  EXPECT_STREQ(pdu.getVarBind(0).getValue().toString(), "printer-2");
}

TEST_F(DiscoveryTest, AsksForTheNextObjectsAndWaitsAsLongAsItIsTold) {
  ReqRespPDU parent;
  parent.addVarBind(VarBind{OID("1.3.6.1.2.1.1.5")});
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(manager.broadcast(parent, nullptr, keepAnswer, nullptr, PDUGetNextRequest, 1), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(2500));
  EXPECT_EQ(answersOf(false).size(), 5U);
  EXPECT_EQ(answers["10.9.0.103"], std::string(kSysName) + " printer-3");
}

TEST_F(DiscoveryTest, HearsNobodyWithAForeignCommunity) {
  EXPECT_EQ(manager.broadcast(pdu, "nobody", keepAnswer, keepStatus, 1), 0);
  EXPECT_TRUE(answers.empty());
  EXPECT_THAT(statuses, ElementsAre(DetectionStarted, DetectionFinished));
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
  EXPECT_THAT((std::vector<std::string>{list[0].getValue(), list[1].getValue()}),
              testing::UnorderedElementsAre("10.9.0.102", "10.9.5.105"));
  count = 1;
  EXPECT_EQ(manager.detectHPPrinters(list, &count), 0);
  EXPECT_EQ(count, 1);
}

TEST_F(DiscoveryTest, KnowsTheProtocolsOfThisMachine) { EXPECT_EQ(manager.getAvailableProtocols(), ProtocolIP); }

}  // namespace
