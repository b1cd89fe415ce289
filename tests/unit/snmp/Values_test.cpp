#include <gtest/gtest.h>

#include <climits>
#include <initializer_list>
#include <string>

#include "ztsnmp/ztsnmp.h"

namespace {

TEST(Numbers, HaveTexts) {
  Integer value(7);
  EXPECT_EQ(value.setValue(INT_MIN), -2);
  EXPECT_EQ(value.getValue(), 7);
  EXPECT_EQ(Integer(INT_MIN).getValue(), 0);
  // Without empty parts; the blank stays.
  EXPECT_STREQ(TimeTicks(99).toFormattedString(), "");
  EXPECT_STREQ(TimeTicks(6000).toFormattedString(), "1 Minutes ");
  EXPECT_STREQ(TimeTicks(8639999).toFormattedString(), "23 Hours 59 Minutes 59 Seconds");
  EXPECT_STREQ(TimeTicks(8640000 + 360000).toFormattedString(), "1 Days 1 Hours ");
  EXPECT_STREQ(TimeTicks(UINT_MAX).toFormattedString(), "497 Days 2 Hours 27 Minutes 52 Seconds");
}

TEST(OctetString, HoldsUpTo1024Bytes) {
  const std::string bytes(1025, '\0');
  OctetString value("a\0b", 3);
  EXPECT_STREQ(value.toString(), "a");
  EXPECT_EQ(value.setValue(bytes.data(), 1025), -6);
  EXPECT_EQ(value.setValue(nullptr, 0), -6);
  EXPECT_EQ(value.toHexString(), "610062");
  EXPECT_EQ(value.setValue(bytes.data(), 1024), 0);
  std::uint64_t length = 0;
  EXPECT_EQ(value.getValue(length)[1024], 0);  // the NUL that follows
  EXPECT_EQ(length, 1024U);
  EXPECT_EQ(value.setValue("", 0), 0);
  EXPECT_EQ(value.isValid(), 0);                     // empty content is valid, on purpose ...
  EXPECT_EQ(OctetString::isValidValue("", 0), -58);  // ... and refused in requests
}

TEST(OctetString, RendersDateAndTime) {
  const unsigned char bytes[] = {0x07, 0xDA, 0x0C, 0x1F, 0x17, 0x3B, 0x3B, 0x09, 0x2B, 0x09, 0x00};
  EXPECT_EQ(OctetString(bytes, 11).toDateAndTimeString(), "2010-12-31,23:59:59.9,+09:00");
  EXPECT_EQ(OctetString(bytes, 8).toDateAndTimeString(), "2010-12-31,23:59:59");
  for (unsigned length : {0U, 7U, 9U, 10U}) EXPECT_EQ(OctetString::toDateAndTimeString(bytes, length), "");
  EXPECT_EQ(OctetString::toDateAndTimeString(nullptr, 8), "");
}

using Texts = std::initializer_list<std::string>;

/// `old` is a good text as well; what is refused leaves it.
template <typename Value>
void checkTexts(int status, const char* old, Texts good, Texts bad) {
  Value value;
  for (const std::string& text : good) {
    EXPECT_EQ(value.setValue(text.c_str()), 0) << text;
    EXPECT_EQ(value.toString(), text);
    EXPECT_EQ(Value(text.c_str()).getValue(), text);
    EXPECT_EQ(value.isValid(), 0);
  }
  EXPECT_EQ(value.setValue(old), 0);
  for (const std::string& text : bad) {
    EXPECT_EQ(value.setValue(text.c_str()), status) << text;
    EXPECT_STREQ(Value(text.c_str()).toString(), "");
  }
  EXPECT_EQ(value.setValue(nullptr), status);
  EXPECT_STREQ(value.getValue(), old);
}

TEST(OID, TakesDottedNumbers) {
  const std::string longest = std::string(253, '1') + ".1";
  // The size of numbers is the encoder's matter.
  checkTexts<OID>(-7, "1.3", {"", "0", "1.3.6.1.2.1.1.1.0", "99999999999999.1", longest},
                  {longest + "1", ".1.3", "1.3.6.", "1..3", ".", "1.-3", "1.3 ", "1,3", "1:3", "1/3"});
}

TEST(IPAddress, TakesFourNumbersBelow256) {
  checkTexts<IPAddress>(-3, "10.0.0.1", {"0.0.0.0", "255.255.255.255", "192.168.001.010"},
                        {"192.168.1.256", "192.168.1.0001", "1.2.3", "1.2.3.4.5", "1..2.3", ".1.2.3", "1.2.3.",
                         "1.2.3.4 ", "1.2.3.-4", ""});
  EXPECT_EQ(IPAddress().isValid(), -3);
}

TEST(IPv6Address, TakesTheTextualForms) {
  checkTexts<IPv6Address>(
      -3, "fe80::2",
      {"::", "::1", "1::", "1:2:3:4:5:6:7:8", "1:2:3:4:5:6:7::", "FE80::aBcD", "::ffff:1.2.3.4", "1:2:3:4:5:6:1.2.3.4",
       "::001.002.003.004",
       // The zone is not looked at.
       "fe80::1%12", "fe80::1%no/zone:at%all"},
      {"1::2::3", "12345::", "1:2:3:4:5:6:7", "1:2:3:4:5:6:7:8:9", "1:2:3:4:5:6:7:8::", ":1",
       ":1::", "1:", "1::2:", ":::", "1:::2", ":", "", "%1", "g::", std::string(300, 'a'),
       // "::" stands for one group at least, and a dotted part is a tail of two.
       "1:2:3:4::5:6:7:8", "1.2.3.4", "::1.2.3.4:5", "::1.2.3", "::1.2.3.256", "1:2:3:4:5:6:7:1.2.3.4"});
}

TEST(HexAddresses, TakeTheirNumberOfDigits) {
  checkTexts<IPXAddress>(-5, "00000000000000000001", {"0123456789abcdefABCD"},
                         {"0123456789abcdefABC", "0123456789abcdefABCD0", "0123456789abcdefABCG", ""});
  checkTexts<PhysAddress>(-11, "000000000001", {"00000AbCdEf1"}, {"00000AbCdEf", "00000AbCdEf12", "00000AbCdEfx", ""});
  EXPECT_EQ(PhysAddress().isValid(), -11);
  IPXAddress address;
  EXPECT_EQ(address.setValue("0000002", "00000AbCdEf1"), -5);
  EXPECT_EQ(address.setValue("00000002", "00000AbCdEf"), -5);
  EXPECT_EQ(address.setValue(nullptr, "00000AbCdEf1"), -5);
  EXPECT_EQ(address.setValue("00000002", "00000AbCdEf1"), 0);
  EXPECT_STREQ(address.getValue(), "0000000200000AbCdEf1");
}

TEST(StatusTexts, AreLookedUpByAbsoluteValue) {
  const auto text = [](int status) { return std::string(SNMPManager::errorToString(status)); };
  EXPECT_EQ(text(-53), "SNMP : GET ERROR");
  EXPECT_EQ(text(53), text(-53));
  EXPECT_EQ(text(125) + text(INT_MAX), "");
  std::uint32_t sum = 0;  // Programs look for these texts: none changes by mistake.
  for (int status = 0; status < 125; ++status) {
    for (const char character : text(-status)) sum = sum * 31 + static_cast<unsigned char>(character);
  }
  EXPECT_EQ(sum, 673053738U);
}

}  // namespace
