#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "ztsnmp/ztsnmp.h"

namespace {

TEST(Integer, RefusesTheLowestNumber) {
  Integer value(7);
  EXPECT_EQ(value.setValue(INT_MIN), -2);
  EXPECT_EQ(value.getValue(), 7);
  EXPECT_EQ(Integer(INT_MIN).getValue(), 0);
  EXPECT_EQ(value.setValue(INT_MAX), 0);
  EXPECT_STREQ(value.toString(), "2147483647");
  EXPECT_EQ(value.setValue(-INT_MAX), 0);
  EXPECT_STREQ(value.toString(), "-2147483647");
}

TEST(UnsignedValues, TakeAllNumbers) {
  EXPECT_STREQ(Counter(UINT_MAX).toString(), "4294967295");
  EXPECT_STREQ(Gauge(UINT_MAX).toString(), "4294967295");
  EXPECT_STREQ(TimeTicks(UINT_MAX).toString(), "4294967295");
}

TEST(DataTypes, AreTheTagsOfTheWire) {
  EXPECT_EQ(Integer().getDataType(), 2);
  EXPECT_EQ(OctetString().getDataType(), 4);
  EXPECT_EQ(Null().getDataType(), 5);
  EXPECT_EQ(OID().getDataType(), 6);
  EXPECT_EQ(IPAddress().getDataType(), 64);
  EXPECT_EQ(IPv6Address().getDataType(), 64);  // shares the tag
  EXPECT_EQ(Counter().getDataType(), 65);
  EXPECT_EQ(Gauge().getDataType(), 66);
  EXPECT_EQ(TimeTicks().getDataType(), 67);
  EXPECT_EQ(IPXAddress().getDataType(), -1);
  EXPECT_EQ(PhysAddress().getDataType(), -1);
  EXPECT_EQ(IPAddress().getAddressType(), -1001);
  EXPECT_EQ(IPXAddress().getAddressType(), -1002);
  EXPECT_EQ(PhysAddress().getAddressType(), -1003);
  EXPECT_EQ(IPv6Address().getAddressType(), -1004);
}

TEST(TimeTicks, AreFormattedWithoutEmptyParts) {
  const struct {
    unsigned hundredths;
    const char* text;
  } rows[] = {
      {99, ""},
      {100, "1 Seconds"},
      {6000, "1 Minutes "},  // the blank stays
      {9000, "1 Minutes 30 Seconds"},
      {8640000, "1 Days "},
      {8640000 + 360000, "1 Days 1 Hours "},
      {UINT_MAX, "497 Days 2 Hours 27 Minutes 52 Seconds"},
  };
  for (const auto& row : rows) EXPECT_STREQ(TimeTicks(row.hundredths).toFormattedString(), row.text);
}

TEST(OctetString, HoldsUpTo1024Bytes) {
  const std::string bytes(1025, '\0');
  OctetString value("old", 3);
  EXPECT_EQ(value.setValue(bytes.data(), 1025), -6);
  EXPECT_EQ(value.setValue(nullptr, 0), -6);
  EXPECT_STREQ(value.toString(), "old");
  EXPECT_EQ(value.setValue(bytes.data(), 1024), 0);
  std::uint64_t length = 0;
  EXPECT_EQ(value.getValue(length)[1024], 0);  // the NUL that follows
  EXPECT_EQ(length, 1024U);
  EXPECT_EQ(value.setValue("", 0), 0);
  EXPECT_EQ(value.isValid(), 0);                     // empty content is valid, on purpose ...
  EXPECT_EQ(OctetString::isValidValue("", 0), -58);  // ... and refused in requests
  EXPECT_EQ(OctetString::isValidValue(nullptr, 1), -6);
}

TEST(OctetString, CopiesAreDeepAndKeepNuls) {
  OctetString original("a\0b", 3);
  const OctetString copy(original);
  original.setValue("other", 5);
  EXPECT_EQ(copy.toHexString(), "610062");
  EXPECT_STREQ(copy.toString(), "a");
  EXPECT_EQ(OctetString().toHexString(), "");
}

TEST(OctetString, RendersDateAndTime) {
  const unsigned char bytes[] = {0x07, 0xDA, 0x0C, 0x1F, 0x17, 0x3B, 0x3B, 0x09, 0x2B, 0x09, 0x00};
  EXPECT_EQ(OctetString(bytes, 11).toDateAndTimeString(), "2010-12-31,23:59:59.9,+09:00");
  EXPECT_EQ(OctetString(bytes, 8).toDateAndTimeString(), "2010-12-31,23:59:59");
  for (unsigned length : {0U, 7U, 9U, 10U}) EXPECT_EQ(OctetString::toDateAndTimeString(bytes, length), "");
  EXPECT_EQ(OctetString::toDateAndTimeString(nullptr, 8), "");
}

struct TextRow {
  std::string text;
  int status;
};

template <typename Address>
void checkTexts(std::initializer_list<TextRow> rows, const char* old) {
  for (const auto& row : rows) {
    Address value(old);
    EXPECT_EQ(value.setValue(row.text.c_str()), row.status) << row.text;
    EXPECT_STREQ(value.toString(), row.status == 0 ? row.text.c_str() : old) << row.text;
    EXPECT_STREQ(value.getValue(), value.toString());
    EXPECT_STREQ(Address(row.text.c_str()).toString(), row.status == 0 ? row.text.c_str() : "");
  }
}

TEST(OID, TakesDottedNumbers) {
  const std::string longest = std::string(253, '1') + ".1";
  checkTexts<OID>(
      {
          {"", 0},
          {"0", 0},
          {"1.3.6.1.2.1.1.1.0", 0},
          {"99999999999999.1", 0},  // the size of numbers is the encoder's matter
          {longest, 0},
          {longest + "1", -7},
          {".1.3", -7},
          {"1.3.6.", -7},
          {"1..3", -7},
          {".", -7},
          {"1.-3", -7},
          {"1.3 ", -7},
          {"1,3", -7},
      },
      "1.3");
  EXPECT_EQ(OID::isValidValue(nullptr), -7);
}

TEST(IPAddress, TakesFourNumbersBelow256) {
  checkTexts<IPAddress>(
      {
          {"0.0.0.0", 0},
          {"255.255.255.255", 0},
          {"192.168.001.010", 0},
          {"192.168.1.256", -3},
          {"192.168.1.0001", -3},
          {"1.2.3", -3},
          {"1.2.3.4.5", -3},
          {"1..2.3", -3},
          {".1.2.3", -3},
          {"1.2.3.", -3},
          {"1.2.3.4 ", -3},
          {"1.2.3.-4", -3},
          {"", -3},
      },
      "10.0.0.1");
  EXPECT_EQ(IPAddress::isValidAddress(nullptr), -3);
  EXPECT_EQ(IPAddress().isValid(), -3);
}

TEST(IPv6Address, TakesTheTextualForms) {
  checkTexts<IPv6Address>(
      {
          {"::", 0},
          {"::1", 0},
          {"1::", 0},
          {"1:2:3:4:5:6:7:8", 0},
          {"1:2:3:4:5:6:7::", 0},
          {"FE80::aBcD", 0},
          {"fe80::1%12", 0},
          {"fe80::1%no/zone:at%all", 0},  // the zone is not looked at
          {"::ffff:1.2.3.4", 0},
          {"1:2:3:4:5:6:1.2.3.4", 0},
          {"::001.002.003.004", 0},
          {"1::2::3", -3},
          {"12345::", -3},
          {"1:2:3:4:5:6:7", -3},
          {"1:2:3:4:5:6:7:8:9", -3},
          {"1:2:3:4:5:6:7:8::", -3},
          {"1:2:3:4::5:6:7:8", -3},  // "::" stands for one group at least
          {":1", -3},
          {":1::", -3},
          {"1:", -3},
          {"1::2:", -3},
          {":::", -3},
          {"1:::2", -3},
          {":", -3},
          {"", -3},
          {"%1", -3},
          {"g::", -3},
          {"1.2.3.4", -3},
          {"::1.2.3.4:5", -3},  // a dotted part is a tail
          {"::1.2.3", -3},
          {"::1.2.3.256", -3},
          {"1:2:3:4:5:6:7:1.2.3.4", -3},
          {std::string(300, 'a'), -3},
      },
      "fe80::2");
  EXPECT_EQ(IPv6Address::isValidAddress(nullptr), -3);
}

TEST(IPXAddress, Takes20HexDigits) {
  checkTexts<IPXAddress>(
      {
          {"0123456789abcdefABCD", 0},
          {"0123456789abcdefABC", -5},
          {"0123456789abcdefABCD0", -5},
          {"0123456789abcdefABCG", -5},
          {"", -5},
      },
      "00000000000000000001");
  IPXAddress address;
  EXPECT_EQ(address.setValue(nullptr), -5);
  EXPECT_EQ(address.setValue("0000002", "00000AbCdEf1"), -5);
  EXPECT_EQ(address.setValue("00000002", "00000AbCdEf"), -5);
  EXPECT_EQ(address.setValue(nullptr, "00000AbCdEf1"), -5);
  EXPECT_EQ(address.setValue("00000002", "00000AbCdEf1"), 0);
  EXPECT_STREQ(address.getValue(), "0000000200000AbCdEf1");
}

TEST(PhysAddress, Takes12HexDigits) {
  checkTexts<PhysAddress>(
      {
          {"00000AbCdEf1", 0},
          {"00000AbCdEf", -11},
          {"00000AbCdEf12", -11},
          {"00000AbCdEfx", -11},
      },
      "000000000001");
  EXPECT_EQ(PhysAddress().isValid(), -11);
}

TEST(StatusTexts, AreLookedUpByAbsoluteValue) {
  const struct {
    int status;
    const char* text;
  } rows[] = {
      {0, "SNMP : SUCCESS"},
      {-53, "SNMP : GET ERROR"},
      {7, "SNMP : INVALID OID"},
      {-7, "SNMP : INVALID OID"},
      {-45, "IP : REX TIMEOUT ERROR"},
      {-88, "DLC : INITIALIZATION ERROR\t"},  // the tab belongs to it
      {-124, "SNMP : DLC_RX_STATUSCHANGE_ERROR"},
      {124, "SNMP : DLC_RX_STATUSCHANGE_ERROR"},
      {125, ""},
      {INT_MAX, ""},
  };
  for (const auto& row : rows) EXPECT_STREQ(SNMPManager::errorToString(row.status), row.text);
}

}  // namespace
