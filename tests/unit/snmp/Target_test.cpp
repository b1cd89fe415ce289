#include "ztsnmp/Target.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(Target, RefusesValuesOutOfRange) {
  Target target;
  for (int count : {-1, 6}) EXPECT_EQ(target.setRetryCount(count), -18);
  for (int count : {0, 5}) EXPECT_EQ(target.setRetryCount(count), 0);
  EXPECT_EQ(target.getRetryCount(), 5);
  for (int seconds : {0, 61}) EXPECT_EQ(target.setTimeout(seconds), -19);
  for (int seconds : {1, 60}) EXPECT_EQ(target.setTimeout(seconds), 0);
  EXPECT_EQ(target.getTimeout(), 60);

  const std::string longest(25, 'c');
  const Target named(IPv6Address("::1"), "r", longest.c_str());
  EXPECT_EQ(named.isValid(), 0);
  EXPECT_STREQ(named.getReadCommunity(), "r");
  EXPECT_EQ(named.getWriteCommunity(), longest);
  EXPECT_EQ(Target(IPv6Address("::1"), longest.c_str(), "w").isValid(), 0);
  for (const char* bad : {static_cast<const char*>(nullptr), "", "cccccccccccccccccccccccccc"}) {
    EXPECT_EQ(target.setReadCommunity(bad), -51);
    EXPECT_EQ(target.setWriteCommunity(bad), -51);
  }
  EXPECT_STREQ(target.getReadCommunity(), "public");
  EXPECT_STREQ(target.getWriteCommunity(), "public");
}

TEST(Target, NeedsOneAddressOfAnyKind) {
  EXPECT_EQ(Target().isValid(), -23);
  EXPECT_EQ(Target(IPAddress("10.0.0.1")).isValid(), 0);
  EXPECT_EQ(Target(IPXAddress("00000001", "000000000002")).isValid(), 0);
  EXPECT_EQ(Target(PhysAddress("000000000002")).isValid(), 0);
  EXPECT_EQ(Target(IPAddress("10.0.0.256")).isValid(), -23);

  Target target;
  EXPECT_EQ(target.setIPv6Address(IPv6Address()), -3);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(target.setIPv6Address(IPv6Address("fe80::1")), 0);
  EXPECT_EQ(target.setIPv6Address(IPv6Address("fe80::1")), -1);
  EXPECT_STREQ(target.getIPv6Address(9).getValue(), "fe80::1");
  for (int index : {-1, 10}) EXPECT_EQ(target.getIPv6Address(index).isValid(), -3);
}

TEST(Target, WalksInTheOrderWanted) {
  const struct {
    int order;
    const char* ipv4;
    int ipv6;
    const char* visited;
  } rows[] = {
      {OrderIPv4Only, "10.0.0.1", 2, "10.0.0.1 "},
      {OrderIPv6Only, "10.0.0.1", 2, "::1 ::2 "},
      {OrderIPv4First, "10.0.0.1", 0, "10.0.0.1 "},
      {OrderIPv4First, "10.0.0.1", 2, "10.0.0.1 ::1 ::2 "},
      {OrderIPv4First, "", 3, "::1 ::1 ::2 "},  // the last one is never reached, on purpose
      {OrderIPv4First, "", 1, "::1 "},
      {OrderIPv6First, "10.0.0.1", 2, "::1 ::2 10.0.0.1 "},
      {OrderIPv6First, "", 2, "::1 ::2 "},
      {3, "10.0.0.1", 2, ""},  // no such order
  };
  for (const auto& row : rows) {
    Target target;
    target.setIPAddress(IPAddress(row.ipv4));
    for (int i = 1; i <= row.ipv6; ++i) target.setIPv6Address(IPv6Address(("::" + std::to_string(i)).c_str()));
    if (row.order != OrderIPv4First) target.setIPAddressOrder(row.order);  // else as it comes
    for (const char* time : {"first", "again"}) {
      EXPECT_EQ(target.getNextAddress(), nullptr);
      std::string visited;
      for (auto* at = target.getFirstAddress(); at != nullptr; at = target.getNextAddress()) {
        visited += std::string(at->getValue()) + ' ';
      }
      EXPECT_EQ(visited, row.visited) << row.order << ' ' << row.ipv6 << ' ' << time;
    }
  }
}

TEST(Target, ResolvesNumericTextsByItself) {
  Target target;
  EXPECT_EQ(target.setAgentAddress(nullptr), -52);
  EXPECT_EQ(target.ResolveAddress(), -52);
  for (const char* text : {"10.0.0.9", "fe80::5%3"}) {
    EXPECT_EQ(target.setAgentAddress(text), 0);
    EXPECT_FALSE(target.isAddressResolved());
    EXPECT_EQ(target.ResolveAddress(), 0);
    EXPECT_TRUE(target.isAddressResolved());
  }
  EXPECT_STREQ(target.getIPAddress().getValue(), "10.0.0.9");  // stays
  EXPECT_STREQ(target.getIPv6Address(0).getValue(), "fe80::5%3");
  EXPECT_EQ(target.setAgentAddress(""), 0);
  EXPECT_EQ(target.ResolveAddress(), -32);
}

}  // namespace
