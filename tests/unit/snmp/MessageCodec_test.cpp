#include "MessageCodec.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>

#include "Hex.h"
#include "ztsnmp/ztsnmp.h"

namespace {

using ztsnmp::MessageCodec;

std::string encode(ReqRespPDU& pdu, EnumPDUType type, std::string_view community = "public") {
  Bytes out(MessageCodec::kMaxMessage);
  MessageCodec::setHeader(pdu, type, 0);
  const int length = MessageCodec::encodePacket(pdu, community, out);
  return length < 0 ? std::to_string(length) : toHex(std::span(out).first(static_cast<std::size_t>(length)));
}

ReqRespPDU pduOf(std::initializer_list<const char*> names) {
  ReqRespPDU pdu;
  for (const char* name : names) EXPECT_EQ(pdu.addVarBind(VarBind{OID(name)}), 0);
  return pdu;
}

// What stands in front of the bindings of a set with an empty community.
constexpr const char* kSetHeader = "02 01 00 04 00 A3 ";

/// The bindings, without their list header, of a set of one value.
std::string encodedValue(const SNMPDataType& value) {
  ReqRespPDU pdu = pduOf({"0.0"});
  EXPECT_EQ(pdu.getVarBind(0).setValue(value), 0);
  const std::string message = encode(pdu, PDUSetRequest, "");
  // 30 .. 02 01 00 04 00 A3 .. (9 bytes of header fields) 30 .. 30 .. 06 01 00 value
  const std::string marker = "06 01 00 ";
  const auto found = message.find(marker);
  return found == std::string::npos ? "left out" : message.substr(found + marker.size());
}

TEST(EncodePacket, WritesTheMessageByteForByte) {
  ReqRespPDU pdu = pduOf({"1.3.6.1.2.1.1.1.0"});
  const std::string head = "30 26 02 01 00 04 06 70 75 62 6C 69 63 ";
  const std::string body = " 19 02 01 00 02 01 00 02 01 00 30 0E 30 0C 06 08 2B 06 01 02 01 01 01 00 05 00";
  EXPECT_EQ(encode(pdu, PDUGetRequest), head + "A0" + body);
  EXPECT_EQ(encode(pdu, PDUGetNextRequest), head + "A1" + body);
  EXPECT_EQ(encode(pdu, PDUSetRequest), head + "A3" + body);  // the Null that the get left there
}

TEST(EncodePacket, ReplacesTheValuesOfAGetByNull) {
  ReqRespPDU pdu = pduOf({"1.3.6"});
  pdu.getVarBind(0).setValue(Integer(5));
  EXPECT_NE(encode(pdu, PDUSetRequest), "-1");
  EXPECT_EQ(pdu.getVarBind(0).getValue().getDataType(), DataTypeInteger);
  EXPECT_NE(encode(pdu, PDUGetRequest), "-1");
  EXPECT_EQ(pdu.getVarBind(0).getValue().getDataType(), DataTypeNull);
}

TEST(EncodePacket, WritesOneByteOfTheHeaderFields) {
  ReqRespPDU pdu = pduOf({"1.3"});
  Bytes out(MessageCodec::kMaxMessage);
  MessageCodec::setHeader(pdu, PDUGetRequest, 0x1234);  // the low byte only, on purpose
  MessageCodec::setError(pdu, 0x102, -1);
  const int length = MessageCodec::encodePacket(pdu, "", out);
  EXPECT_EQ(toHex(std::span(out).first(static_cast<std::size_t>(length))),
            "30 19 02 01 00 04 00 A0 12 02 01 34 02 01 02 02 01 FF 30 07 30 05 06 01 2B 05 00");
}

TEST(EncodePacket, WritesEachTypeOfValue) {
  const auto row = [](const SNMPDataType& value, const char* hex) { EXPECT_EQ(encodedValue(value), hex) << hex; };
  row(Integer(0), "02 01 00");
  row(Integer(127), "02 01 7F");
  row(Integer(128), "02 02 00 80");
  row(Integer(255), "02 02 00 FF");
  row(Integer(32767), "02 02 7F FF");
  row(Integer(32768), "02 03 00 80 00");
  row(Integer(8388608), "02 04 00 80 00 00");
  row(Integer(INT_MAX), "02 04 7F FF FF FF");
  row(Integer(-1), "02 01 FF");
  row(Integer(-128), "02 01 80");
  row(Integer(-129), "02 02 FF 7F");
  row(Integer(-32768), "02 02 80 00");
  row(Integer(-32769), "02 03 FF 7F FF");
  row(Integer(-INT_MAX), "02 04 80 00 00 01");

  row(Counter(0), "41 01 00");
  row(Counter(127), "41 01 7F");
  row(Counter(128), "41 02 00 80");
  row(Counter(0x7FFFFFFF), "41 04 7F FF FF FF");
  row(Counter(0x80000000), "41 05 00 80 00 00 00");
  row(Counter(0xFF7FFFFF), "41 05 00 FF 7F FF FF");
  // From here on the shortening drops bytes that count; kept on purpose.
  row(Counter(0xFF800000), "41 04 00 80 00 00");
  row(Counter(0xFFFF8000), "41 03 00 80 00");
  row(Counter(0xFFFFFFFF), "41 02 00 FF");
  row(Gauge(0xFFFFFFFF), "42 02 00 FF");
  row(TimeTicks(8640000), "43 04 00 83 D6 00");

  row(OctetString("ab\0c", 4), "04 04 61 62 00 63");
  row(OctetString("", 0), "left out");  // no bytes: nothing to set
  row(Null(), "05 00");
  row(IPAddress("192.168.001.010"), "40 04 C0 A8 01 0A");
  row(IPAddress(), "left out");
  row(IPv6Address("fe80::1"), "left out");  // has the tag, but no encoding

  row(OID("1.3.6.1"), "06 03 2B 06 01");
  row(OID("1.3.127.128.16383.16384"), "06 09 2B 7F 81 00 FF 7F 81 80 00");
  row(OID("1.3.4294967295"), "06 06 2B 8F FF FF FF 7F");
  row(OID("1.3.4294967296"), "left out");  // does not fit a number
  row(OID("1.3.99999999999999999999"), "left out");
  row(OID("2.39"), "06 01 77");
  row(OID("2.100"), "06 01 B4");  // one byte, as the reading side expects
  row(OID("6.16"), "left out");   // 256
  row(OID("107374182.16"), "left out");
  row(OID("1"), "06 01 28");  // missing arcs count as 0
  row(OID(""), "06 01 00");
  row(OID("0001.0003"), "06 01 2B");
}

TEST(EncodePacket, WritesLongLengths) {
  const struct {
    std::size_t length;
    std::string header;
  } rows[] = {{127, "04 7F "}, {128, "04 81 80 "}, {255, "04 81 FF "}, {256, "04 82 01 00 "}, {1024, "04 82 04 00 "}};
  for (const auto& row : rows) {
    const std::string content(row.length, 'x');
    EXPECT_TRUE(encodedValue(OctetString(content.data(), content.size())).starts_with(row.header + "78 "));
  }
}

TEST(EncodePacket, LeavesOutABindingThatHasNoEncoding) {
  ReqRespPDU pdu = pduOf({"1.1", "1.2", "4.1000", "1.4"});
  pdu.getVarBind(0).setValue(Integer(1));
  pdu.getVarBind(1).setValue(IPv6Address("::1"));
  pdu.getVarBind(2).setValue(Integer(3));  // the name has none
  // The last one has no value.
  EXPECT_EQ(encode(pdu, PDUSetRequest, ""),
            std::string("30 1A ") + kSetHeader + "13 02 01 00 02 01 00 02 01 00 30 08 30 06 06 01 29 02 01 01");
  EXPECT_EQ(encode(pdu, PDUGetResponse, ""),
            "30 12 02 01 00 04 00 A2 0B 02 01 00 02 01 00 02 01 00 30 00");  // nothing is ever sent of another type
}

TEST(EncodePacket, RefusesLongCommunities) {
  ReqRespPDU pdu = pduOf({"1.3"});
  EXPECT_NE(encode(pdu, PDUGetRequest, std::string(48, 'c')), "-1");
  EXPECT_EQ(encode(pdu, PDUGetRequest, std::string(49, 'c')), "-1");
}

TEST(EncodePacket, FailsWhereTheRoomEnds) {
  ReqRespPDU pdu = pduOf({"1.3.6.1.2.1.1.1.0", "1.3.6.1.2.1.1.2.0"});
  MessageCodec::setHeader(pdu, PDUGetRequest, 0);
  constexpr std::size_t kNeeded = 54;
  for (std::size_t size = 0; size < kNeeded; ++size) {
    Bytes out(size);
    EXPECT_EQ(MessageCodec::encodePacket(pdu, "public", out), -1) << size;
  }
  Bytes exact(kNeeded);
  EXPECT_EQ(MessageCodec::encodePacket(pdu, "public", exact), static_cast<int>(kNeeded));

  ReqRespPDU large = pduOf({"1.1", "1.2"});
  const std::string content(1024, 'x');
  for (unsigned i : {0U, 1U}) large.getVarBind(i).setValue(OctetString(content.data(), content.size()));
  EXPECT_EQ(encode(large, PDUSetRequest), "-1");
}

// ---- responses

const Bytes kName = fromHex("06 03 2B 06 01");
constexpr const char* kFields = "02 01 07 02 01 00 02 01 00";

Bytes message(std::uint8_t pduTag, const Bytes& content) {
  return element(0x30, fromHex("02 01 00 04 06 70 75 62 6C 69 63") + element(pduTag, content));
}

Bytes response(const Bytes& bindings, const char* fields = kFields) {
  return message(0xA2, fromHex(fields) + element(0x30, bindings));
}

Bytes binding(const Bytes& value, const Bytes& name = kName) { return element(0x30, name + value); }

int decode(const Bytes& bytes, ReqRespPDU& pdu) { return MessageCodec::decodePacket(bytes, pdu); }

TEST(DecodePacket, ReadsEachTypeOfValue) {
  struct Row {
    const char* value;
    int type;  // -1: refused
    const char* text;
  };
  const Row rows[] = {
      {"02 01 05", 2, "5"},
      {"02 01 80", 2, "-128"},
      {"02 02 00 80", 2, "128"},
      {"02 04 00 00 00 05", 2, "5"},  // not minimal
      {"02 04 7F FF FF FF", 2, "2147483647"},
      {"02 04 80 00 00 01", 2, "-2147483647"},
      {"02 04 80 00 00 00", -1, ""},  // the number that no Integer holds
      {"02 00", -1, ""},
      {"02 05 00 00 00 00 05", -1, ""},
      {"41 01 05", 0x41, "5"},
      {"41 01 80", 0x41, "4294967168"},  // taken as negative, on purpose
      {"41 02 80 00", 0x41, "4294934528"},
      {"41 02 00 FF", 0x41, "255"},
      {"41 04 FF FF FF FF", 0x41, "4294967295"},
      {"41 05 00 FF FF FF FF", 0x41, "4294967295"},
      {"41 05 01 00 00 00 00", -1, ""},
      {"41 06 00 00 00 00 00 01", -1, ""},
      {"41 00", -1, ""},
      {"42 05 00 80 00 00 00", 0x42, "2147483648"},
      {"43 03 01 00 00", 0x43, "65536"},
      {"04 00", 4, ""},
      {"04 03 61 62 63", 4, "abc"},
      {"04 81 03 61 62 63", 4, "abc"},  // a long form that need not be
      {"04 84 00 00 00 03 61 62 63", 4, "abc"},
      {"04 85 00 00 00 00 03 61 62 63", -1, ""},
      {"04 80 61 62 63 00 00", -1, ""},  // indefinite
      {"04 04 61 62 63", -1, ""},        // reaches out of the binding
      {"04 84 FF FF FF FF 61", -1, ""},
      {"05 00", 5, ""},
      {"05 01 00", -1, ""},
      {"06 01 2B", 6, "1.3"},
      {"06 01 78", 6, "3.0"},  // 40 is divided out of any first byte
      {"06 01 FF", 6, "6.15"},
      {"06 03 2B 81 00", 6, "1.3.128"},
      {"06 03 2B 80 01", 6, "1.3.1"},  // a needless leading group
      {"06 06 2B 87 FF FF FF 7F", 6, "1.3.2147483647"},
      {"06 06 2B 88 80 80 80 00", -1, ""},  // would be rendered as a negative number
      {"06 06 2B 90 80 80 80 00", -1, ""},  // more than 32 bits
      {"06 02 2B 81", -1, ""},              // the number has no end
      {"06 00", -1, ""},
      {"40 04 C0 A8 01 FF", 0x40, "192.168.1.255"},
      {"40 06 01 02 03 04 05 06", 0x40, "1.2.3.4"},  // longer ones are cut
      {"40 03 01 02 03", -1, ""},
      {"40 19 01 02 03 04 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00", 0x40, "1.2.3.4"},
      {"40 1A 01 02 03 04 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00", -1, ""},
      {"46 01 05", -1, ""},  // Counter64
      {"80 00", -1, ""},     // noSuchObject
      {"82 00", -1, ""},     // endOfMibView
      {"30 00", -1, ""},
      {"", -1, ""},
      {"02 01 05 02 01 06", 2, "5"},  // what follows the value is not looked at
  };
  for (const Row& row : rows) {
    ReqRespPDU pdu = pduOf({"1.2.3"});
    pdu.getVarBind(0).setValue(Null());
    const int status = decode(response(binding(fromHex(row.value))), pdu);
    const VarBind& slot = pdu.getVarBind(0);
    EXPECT_EQ(status, row.type < 0 ? -1 : 0) << row.value;
    EXPECT_EQ(slot.getValue().getDataType(), row.type < 0 ? DataTypeNull : row.type) << row.value;
    EXPECT_STREQ(slot.getValue().toString(), row.text) << row.value;
    EXPECT_STREQ(slot.getOID().getValue(), row.type < 0 ? "1.2.3" : "1.3.6.1") << row.value;
  }
}

TEST(DecodePacket, BoundsTheLengthOfStringsAndNames) {
  ReqRespPDU pdu = pduOf({"1.2.3"});
  EXPECT_EQ(decode(response(binding(element(4, Bytes(1024, 'x')))), pdu), 0);
  pdu.getVarBind(0).setValue(Null());
  EXPECT_EQ(decode(response(binding(element(4, Bytes(1025, 'x')))), pdu), -1);

  // 127 arcs of one digit and a first byte of two are the longest text of 255 characters.
  EXPECT_EQ(decode(response(binding(fromHex("05 00"), element(6, Bytes(127, 1)))), pdu), 0);
  EXPECT_EQ(std::string(pdu.getVarBind(0).getOID().getValue()).size(), 255U);
  EXPECT_EQ(decode(response(binding(fromHex("05 00"), element(6, Bytes(128, 1)))), pdu), -1);
  EXPECT_EQ(decode(response(binding(fromHex("05 00"), element(6, Bytes(300, 1)))), pdu), -1);
}

TEST(DecodePacket, RefusesOtherShapes) {
  const Bytes good = binding(fromHex("02 01 05"));
  struct Row {
    const char* what;
    Bytes bytes;
    int status;
  };
  const Bytes community = fromHex("04 06 70 75 62 6C 69 63");
  const Bytes pduBytes = element(0xA2, fromHex(kFields) + element(0x30, good));
  const Row rows[] = {
      {"as it should be", response(good), 0},
      {"empty", {}, -1},
      {"other outer tag", element(0x31, fromHex("02 01 00") + community + pduBytes), -1},
      {"version 2", element(0x30, fromHex("02 01 01") + community + pduBytes), -1},
      {"version of two bytes", element(0x30, fromHex("02 02 00 00") + community + pduBytes), -1},
      {"community of another type", element(0x30, fromHex("02 01 00 02 01 00") + pduBytes), -1},
      {"no community", element(0x30, fromHex("02 01 00") + pduBytes), -1},
      {"another community", element(0x30, fromHex("02 01 00 04 03 61 62 63") + pduBytes), 0},  // not compared
      {"a get", message(0xA0, fromHex(kFields) + element(0x30, good)), -1},
      {"a trap", message(0xA4, fromHex(kFields) + element(0x30, good)), -1},
      {"another request-id", response(good, "02 01 63 02 01 00 02 01 00"), 0},  // not compared
      {"request-id of two bytes", response(good, "02 02 00 07 02 01 00 02 01 00"), -1},
      {"fields of another type", response(good, "04 01 07 04 01 00 04 01 00"), 0},  // only their places count
      {"fields missing", message(0xA2, fromHex("02 01 07 02 01 00")), -1},
      {"list missing", message(0xA2, fromHex(kFields)), -1},
      {"list of another tag", message(0xA2, fromHex(kFields) + element(0x31, good)), -1},
      {"binding of another tag", response(element(0x31, kName + fromHex("02 01 05"))), -1},
      {"name of another tag", response(binding(fromHex("02 01 05"), fromHex("0D 01 2B"))), -1},
      {"no binding", response({}), -1},
      {"one binding too many", response(good + good), 0},  // the PDU takes what it asked for
      {"bytes behind the message", response(good) + fromHex("00 00"), 0},
      {"agent error", response(good, "02 01 07 02 01 02 02 01 01"), -1},
      {"too long", response(good) + Bytes(2048 - response(good).size() + 1), -1},
      {"as long as can be", response(good) + Bytes(2048 - response(good).size()), 0},
  };
  for (const Row& row : rows) {
    ReqRespPDU pdu = pduOf({"1.2.3"});
    EXPECT_EQ(decode(row.bytes, pdu), row.status) << row.what;
  }
}

TEST(DecodePacket, LeavesTheAgentsErrorInThePDU) {
  ReqRespPDU pdu = pduOf({"1.2.3"});
  EXPECT_EQ(decode(response(binding(fromHex("05 00")), "02 01 07 02 01 02 02 01 01"), pdu), -1);
  EXPECT_EQ(pdu.getErrorStatus(), 2);
  EXPECT_EQ(pdu.getErrorIndex(), 1);
}

TEST(DecodePacket, GivesTheSlotOfABadBindingToTheNext) {
  ReqRespPDU pdu = pduOf({"1.1", "1.2", "1.3"});
  const Bytes bad = binding(fromHex("46 01 05"));
  EXPECT_EQ(decode(response(binding(fromHex("02 01 01")) + bad + binding(fromHex("02 01 03"))), pdu), -1);
  EXPECT_STREQ(pdu.getVarBind(0).getValue().toString(), "1");
  EXPECT_STREQ(pdu.getVarBind(1).getValue().toString(), "3");
  EXPECT_STREQ(pdu.getVarBind(2).getOID().getValue(), "1.3");

  ReqRespPDU fewer = pduOf({"1.1", "1.2"});
  EXPECT_EQ(decode(response(binding(fromHex("02 01 01"))), fewer), -1);
}

TEST(DecodePacket, WantsTheTypeThatASetHasSent) {
  ReqRespPDU pdu = pduOf({"1.1"});
  pdu.getVarBind(0).setValue(Counter(1));
  EXPECT_EQ(decode(response(binding(fromHex("42 01 02"))), pdu), -1);
  EXPECT_STREQ(pdu.getVarBind(0).getValue().toString(), "1");
  EXPECT_EQ(decode(response(binding(fromHex("41 01 02"))), pdu), 0);
  EXPECT_STREQ(pdu.getVarBind(0).getValue().toString(), "2");

  // An address that cannot take the octets keeps its own and counts as read, on purpose.
  pdu.getVarBind(0).setValue(IPv6Address("::1"));
  EXPECT_EQ(decode(response(binding(fromHex("40 04 01 02 03 04"))), pdu), 0);
  EXPECT_STREQ(pdu.getVarBind(0).getValue().toString(), "::1");
}

/// What a PDU says, all of it.
std::string contentOf(const ReqRespPDU& pdu) {
  std::string text = std::to_string(pdu.getErrorStatus()) + ' ' + std::to_string(pdu.getErrorIndex());
  for (int i = 0; i < pdu.getVarBindCount(); ++i) {
    const VarBind& slot = pdu.getVarBind(static_cast<unsigned>(i));
    text += std::string(" [") + slot.getOID().getValue() + '=' + std::to_string(slot.getValue().getDataType()) + ':' +
            slot.getValue().toString() + ']';
  }
  return text;
}

TEST(DecodePacket, RefusesEachPrefixAndLeavesThePDUAlone) {
  const Bytes bindings[] = {
      binding(fromHex("02 02 01 05")),
      binding(fromHex("04 03 61 62 63")) + binding(fromHex("41 05 00 FF FF FF FF")),
      binding(element(4, Bytes(300, 'x'))) + binding(fromHex("06 03 2B 81 00")) + binding(fromHex("40 04 01 02 03 04")),
  };
  for (const Bytes& list : bindings) {
    const Bytes whole = response(list);
    for (std::size_t length = 0; length < whole.size(); ++length) {
      ReqRespPDU pdu = pduOf({"1.1"});
      const std::string before = contentOf(pdu);
      const std::unique_ptr<std::uint8_t[]> exact(new std::uint8_t[length]);  // so that a read past the end is seen
      std::copy_n(whole.begin(), length, exact.get());
      EXPECT_EQ(MessageCodec::decodePacket({exact.get(), length}, pdu), -1) << length;
      EXPECT_EQ(contentOf(pdu), before);
    }
  }
}

TEST(Codec, ReadsBackWhatItWrites) {
  ReqRespPDU pdu = pduOf({"1.3.6.1.2.1.43.11.1.1.9.1.4", "1.1", "1.2", "1.3.1", "1.4", "1.5", "1.6", "1.7"});
  const std::string text(700, 't');
  const Integer integer(-70000);
  const OctetString octets(text.data(), text.size());
  const Counter counter(0xFF7FFFFF);
  const Gauge gauge(128);
  const TimeTicks ticks(0x80000000);
  const IPAddress address("10.0.255.1");
  const OID oid("1.3.6.1.4.1.2147483647");
  const Null null;
  unsigned index = 0;
  for (const SNMPDataType* value :
       std::initializer_list<const SNMPDataType*>{&integer, &octets, &counter, &gauge, &ticks, &address, &oid}) {
    pdu.getVarBind(index++).setValue(*value);
  }
  ASSERT_EQ(pdu.deleteVarBind(index), 0);
  const std::string before = contentOf(pdu);
  Bytes bytes = fromHex(encode(pdu, PDUSetRequest));
  bytes[bytes[1] == 0x82 ? 15 : 13] = 0xA2;  // the agent's echo
  EXPECT_EQ(decode(bytes, pdu), 0);
  EXPECT_EQ(contentOf(pdu), before);
  ReqRespPDU fresh = pduOf({"1.1", "1.1", "1.1", "1.1", "1.1", "1.1", "1.1"});
  EXPECT_EQ(decode(bytes, fresh), 0);
  EXPECT_EQ(contentOf(fresh), before);
}

// ---- traps

const char* const kEnterprise = "06 06 2B 06 01 04 01 63";
const char* const kAgent = "40 04 0A 00 00 07";

Bytes trapOf(const std::string& content) { return message(0xA4, fromHex(content)); }

TEST(DecodeTrapPacket, ReadsATrap) {
  TrapPDU trap;
  const Bytes bytes = trapOf(std::string(kEnterprise) + kAgent +
                             "02 01 06 02 02 01 02 43 02 01 00 30 0C 30 0A 06 03 2B 06 01 04 03 61 62 63");
  EXPECT_EQ(MessageCodec::decodeTrapPacket(bytes, trap), 0);
  EXPECT_STREQ(trap.getEnterprise().getValue(), "1.3.6.1.4.1.99");
  EXPECT_STREQ(trap.getSourceAddress().getValue(), "10.0.0.7");
  EXPECT_EQ(trap.getTrapType(), 6);
  EXPECT_EQ(trap.getTrapCode(), 258);
  EXPECT_EQ(trap.getTrapTime().getValue(), 256U);
  ASSERT_EQ(trap.getVarBindCount(), 1);
  EXPECT_STREQ(trap.getVarBind(0).getValue().toString(), "abc");
  EXPECT_EQ(trap.isValid(), 0);
  const TrapPDU copy(trap);
  EXPECT_STREQ(copy.getVarBind(0).getOID().getValue(), "1.3.6.1");

  for (std::size_t length = 0; length < bytes.size(); ++length) {
    const Bytes prefix(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_EQ(MessageCodec::decodeTrapPacket(prefix, trap), -1) << length;
  }
  EXPECT_EQ(trap.getTrapCode(), 258);  // unchanged

  _MESSAGE delivered{};
  delivered.length = static_cast<std::uint32_t>(bytes.size());
  std::copy(bytes.begin(), bytes.end(), delivered.data);
  EXPECT_EQ(MessageCodec::decodeTrapPacket(&delivered, trap), 0);
  delivered.length = 1565;
  EXPECT_EQ(MessageCodec::decodeTrapPacket(&delivered, trap), -1);
  EXPECT_EQ(MessageCodec::decodeTrapPacket(static_cast<const _MESSAGE*>(nullptr), trap), -1);
}

TEST(DecodeTrapPacket, RefusesDeviations) {
  const std::string enterprise = kEnterprise;
  const std::string agent = kAgent;
  const struct {
    std::string content;
    int status;
    const char* source;
  } rows[] = {
      {enterprise + agent + "02 01 00 02 01 00 43 01 00 30 00", 0, "10.0.0.7"},
      {enterprise + "02 01 00 02 01 00 43 01 00 30 00", 0, "0.0.0.0"},        // no agent address
      {enterprise + "40 00 02 01 00 02 01 00 43 01 00 30 00", 0, "0.0.0.0"},  // an empty one
      {enterprise + "40 02 01 02 02 01 00 02 01 00 43 01 00 30 00", -1, ""},
      {agent + "02 01 00 02 01 00 43 01 00 30 00", -1, ""},               // no enterprise
      {enterprise + agent + "02 01 07 02 01 00 43 01 00 30 00", -1, ""},  // no such generic type
      {enterprise + agent + "02 01 FF 02 01 00 43 01 00 30 00", -1, ""},  // negative
      {enterprise + agent + "02 04 00 00 00 06 02 04 7F FF FF FF 43 01 00 30 00", 0, "10.0.0.7"},
      {enterprise + agent + "02 05 00 00 00 00 06 02 01 00 43 01 00 30 00", -1, ""},
      {enterprise + agent + "02 01 00 02 01 00 41 01 00 30 00", -1, ""},              // time of another type
      {enterprise + agent + "02 01 00 02 01 00 43 01 00", -1, ""},                    // no list
      {enterprise + agent + "02 01 00 02 01 00 43 01 00 30 04 30 02 06 00", -1, ""},  // a bad binding
      {enterprise + agent + "02 01 00 02 01 00 43 01 00 30 02 31 00", -1, ""},
      {enterprise + agent + "02 01 00 02 01 00 43 01 00 30 08 30 06 06 01 2B 46 01 00", -1, ""},
  };
  for (const auto& row : rows) {
    TrapPDU trap;
    EXPECT_EQ(MessageCodec::decodeTrapPacket(trapOf(row.content), trap), row.status) << row.content;
    EXPECT_STREQ(trap.getSourceAddress().getValue(), row.source) << row.content;
  }
}

}  // namespace
