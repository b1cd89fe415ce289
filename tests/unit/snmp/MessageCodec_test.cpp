#include "MessageCodec.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "HexBytes.h"
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

/// The value, as a set of it sends it.
std::string encodedValue(const SNMPDataType& value) {
  ReqRespPDU pdu = pduOf({"0.0"});
  EXPECT_EQ(pdu.getVarBind(0).setValue(value), 0);
  const std::string message = encode(pdu, PDUSetRequest, "");
  const std::string name = "06 01 00 ";
  const auto found = message.find(name);
  return found == std::string::npos ? "left out" : message.substr(found + name.size());
}

TEST(EncodePacket, WritesTheMessageByteForByte) {
  ReqRespPDU pdu = pduOf({"1.3.6.1.2.1.1.1.0"});
  const std::string head = "30 26 02 01 00 04 06 70 75 62 6C 69 63 ";
  const std::string body = " 19 02 01 00 02 01 00 02 01 00 30 0E 30 0C 06 08 2B 06 01 02 01 01 01 00 05 00";
  pdu.getVarBind(0).setValue(Integer(5));  // of no account: get and get-next put a Null in its place
  EXPECT_EQ(encode(pdu, PDUGetRequest), head + "A0" + body);
  EXPECT_EQ(pdu.getVarBind(0).getValue().getDataType(), DataTypeNull);
  pdu.getVarBind(0).setValue(Integer(5));
  EXPECT_EQ(encode(pdu, PDUGetNextRequest), head + "A1" + body);
  EXPECT_EQ(encode(pdu, PDUSetRequest), head + "A3" + body);

  Bytes out(MessageCodec::kMaxMessage);
  MessageCodec::setHeader(pdu, PDUGetRequest, 0x1234);  // the low byte only, on purpose
  MessageCodec::setError(pdu, 0x102, -1);
  EXPECT_EQ(MessageCodec::encodePacket(pdu, "public", out), 40);
  EXPECT_EQ(toHex(std::span(out).subspan(15, 9)), "02 01 34 02 01 02 02 01 FF");
}

TEST(EncodePacket, WritesEachTypeOfValue) {
  for (const char* row :
       {"0 = 02 01 00", "127 = 02 01 7F", "128 = 02 02 00 80", "32767 = 02 02 7F FF", "32768 = 02 03 00 80 00",
        "8388608 = 02 04 00 80 00 00", "2147483647 = 02 04 7F FF FF FF", "-1 = 02 01 FF", "-128 = 02 01 80",
        "-129 = 02 02 FF 7F", "-32768 = 02 02 80 00", "-32769 = 02 03 FF 7F FF", "-2147483647 = 02 04 80 00 00 01"}) {
    EXPECT_EQ(encodedValue(Integer(std::stoi(parted(row).first))), parted(row).second);
  }
  for (const char* row :
       {"0 = 41 01 00", "127 = 41 01 7F", "128 = 41 02 00 80", "2147483647 = 41 04 7F FF FF FF",
        "2147483648 = 41 05 00 80 00 00 00", "4286578687 = 41 05 00 FF 7F FF FF",
        // From FF800000 on the shortening drops bytes that count; kept on purpose.
        "4286578688 = 41 04 00 80 00 00", "4294934528 = 41 03 00 80 00", "4294967295 = 41 02 00 FF"}) {
    EXPECT_EQ(encodedValue(Counter(static_cast<unsigned>(std::stoul(parted(row).first)))), parted(row).second);
  }
  EXPECT_EQ(encodedValue(Gauge(0xFFFFFFFF)), "42 02 00 FF");
  EXPECT_EQ(encodedValue(TimeTicks(8640000)), "43 04 00 83 D6 00");
  for (const char* row : {"1.3.6.1 = 06 03 2B 06 01", "1.3.127.128.16383.16384 = 06 09 2B 7F 81 00 FF 7F 81 80 00",
                          "1.3.4294967295 = 06 06 2B 8F FF FF FF 7F", "2.39 = 06 01 77",
                          // No 32-bit numbers, and first arcs that share no byte.
                          "1.3.4294967296 = left out", "1.3.42949672950 = left out",
                          "1.3.99999999999999999999 = left out", "6.16 = left out", "107374182.16 = left out",
                          // Not as they would be read: a second arc above 39, missing arcs (0), leading zeros.
                          "2.100 = 06 01 B4", "1 = 06 01 28", " = 06 01 00", "0001.0003 = 06 01 2B"}) {
    EXPECT_EQ(encodedValue(OID(parted(row).first.c_str())), parted(row).second) << row;
  }
  EXPECT_EQ(encodedValue(Null()), "05 00");
  EXPECT_EQ(encodedValue(IPAddress("192.168.001.010")), "40 04 C0 A8 01 0A");
  EXPECT_EQ(encodedValue(IPAddress()), "left out");
  EXPECT_EQ(encodedValue(IPv6Address("fe80::1")), "left out");  // has the tag, but no encoding
  EXPECT_EQ(encodedValue(OctetString("ab\0c", 4)), "04 04 61 62 00 63");
  EXPECT_EQ(encodedValue(OctetString("", 0)), "left out");
  for (const char* row :
       {"127 = 04 7F", "128 = 04 81 80", "255 = 04 81 FF", "256 = 04 82 01 00", "1024 = 04 82 04 00"}) {
    const std::string content(std::stoul(parted(row).first), 'x');
    EXPECT_TRUE(encodedValue(OctetString(content.data(), content.size())).starts_with(parted(row).second + " 78 "));
  }
}

TEST(EncodePacket, LeavesOutABindingThatHasNoEncoding) {
  ReqRespPDU pdu = pduOf({"1.1", "1.2", "4.1000", "1.4"});
  pdu.getVarBind(0).setValue(Integer(1));
  pdu.getVarBind(1).setValue(IPv6Address("::1"));
  pdu.getVarBind(2).setValue(Integer(3));  // the name has none
  // The last one has no value.
  EXPECT_EQ(encode(pdu, PDUSetRequest, ""),
            "30 1A 02 01 00 04 00 A3 13 02 01 00 02 01 00 02 01 00 30 08 30 06 06 01 29 02 01 01");
  // Nothing is ever sent of another type.
  EXPECT_EQ(encode(pdu, PDUGetResponse, ""), "30 12 02 01 00 04 00 A2 0B 02 01 00 02 01 00 02 01 00 30 00");
}

TEST(EncodePacket, FailsWhereTheRoomEnds) {
  ReqRespPDU pdu = pduOf({"1.3.6.1.2.1.1.1.0", "1.3.6.1.2.1.1.2.0"});
  EXPECT_NE(encode(pdu, PDUGetRequest, std::string(48, 'c')), "-1");
  EXPECT_EQ(encode(pdu, PDUGetRequest, std::string(49, 'c')), "-1");
  constexpr std::size_t kNeeded = 54;
  for (std::size_t size = 0; size <= kNeeded; ++size) {
    Bytes out(size);
    EXPECT_EQ(MessageCodec::encodePacket(pdu, "public", out), size < kNeeded ? -1 : 54) << size;
  }
  const std::string content(1024, 'x');
  for (unsigned i : {0U, 1U}) pdu.getVarBind(i).setValue(OctetString(content.data(), content.size()));
  EXPECT_EQ(encode(pdu, PDUSetRequest), "-1");
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

TEST(DecodePacket, ReadsEachTypeOfValue) {
  for (const char* row :
       {"02 01 05 = 5", "02 01 80 = -128", "02 02 00 80 = 128", "02 04 7F FF FF FF = 2147483647",
        "02 04 80 00 00 01 = -2147483647",
        // Not minimal; what follows the value is not looked at.
        "02 04 00 00 00 05 = 5", "02 01 05 02 01 06 = 5", "41 01 05 = 5", "41 02 00 FF = 255",
        "41 04 FF FF FF FF = 4294967295", "41 05 00 FF FF FF FF = 4294967295", "42 05 00 80 00 00 00 = 2147483648",
        "43 03 01 00 00 = 65536",
        // Taken as negative, on purpose.
        "41 01 80 = 4294967168", "41 02 80 00 = 4294934528",
        // Long forms that need not be.
        "04 00 = ", "04 03 61 62 63 = abc", "04 81 03 61 62 63 = abc", "04 84 00 00 00 03 61 62 63 = abc", "05 00 = ",
        // 40 is divided out of any first byte; a needless leading group is let pass.
        "06 01 2B = 1.3", "06 01 78 = 3.0", "06 01 FF = 6.15", "06 03 2B 81 00 = 1.3.128", "06 03 2B 80 01 = 1.3.1",
        "06 06 2B 87 FF FF FF 7F = 1.3.2147483647",
        // Up to 25 octets are an address.
        "40 04 C0 A8 01 FF = 192.168.1.255", "40 06 01 02 03 04 05 06 = 1.2.3.4",
        "40 19 01 02 03 04 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 = 1.2.3.4"}) {
    ReqRespPDU pdu = pduOf({"1.2.3"});
    const auto [value, text] = parted(row);
    EXPECT_EQ(decode(response(binding(fromHex(value))), pdu), 0) << row;
    EXPECT_EQ(contentOf(pdu), "0 0 [1.3.6.1=" + std::to_string(std::stoi(value, nullptr, 16)) + ':' + text + ']')
        << row;
  }
}

TEST(DecodePacket, RefusesWhatIsNoValue) {
  for (const char* value :
       {"02 00", "02 05 00 00 00 00 05", "41 00", "41 05 01 00 00 00 00", "41 06 00 00 00 00 00 01", "05 01 00",
        // The number that no Integer holds.
        "02 04 80 00 00 00",
        // A length of five bytes, the indefinite form, and lengths that reach out of the binding.
        "04 85 00 00 00 00 03 61 62 63", "04 80 61 62 63 00 00", "04 04 61 62 63", "04 84 FF FF FF FF 61",
        // A number without end, one of more than 32 bits, and one that would be rendered as a negative number.
        "06 00", "06 02 2B 81", "06 06 2B 90 80 80 80 00", "06 06 2B 88 80 80 80 00", "40 03 01 02 03",
        "40 1A 01 02 03 04 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00",
        // Counter64, noSuchObject, endOfMibView, no value at all.
        "46 01 05", "80 00", "82 00", "30 00", ""}) {
    ReqRespPDU pdu = pduOf({"1.2.3"});
    EXPECT_EQ(decode(response(binding(fromHex(value))), pdu), -1) << value;
    EXPECT_EQ(contentOf(pdu), "0 0 [1.2.3=5:]") << value;
  }
}

TEST(DecodePacket, BoundsTheLengthOfStringsAndNames) {
  const Bytes null = fromHex("05 00");
  const auto status = [](const Bytes& whole) {
    ReqRespPDU pdu = pduOf({"1.2.3"});
    return decode(response(whole), pdu);
  };
  EXPECT_EQ(status(binding(element(4, Bytes(1024, 'x')))), 0);
  EXPECT_EQ(status(binding(element(4, Bytes(1025, 'x')))), -1);
  // 127 arcs of one digit and a first byte of two are the longest text of 255 characters.
  EXPECT_EQ(status(binding(null, element(6, Bytes(127, 1)))), 0);
  EXPECT_EQ(status(binding(null, element(6, Bytes(128, 1)))), -1);
  EXPECT_EQ(status(binding(null, element(6, Bytes(300, 1)))), -1);
}

TEST(DecodePacket, KeepsNamesSuchThatTheyGoOutAsTheirTextsSay) {
  const struct {
    const char* asked;
    const char* answered;
    const char* text;
    const char* sent;
  } rows[] = {
      {"1.3.6", "06 02 2B 06", "1.3.6", "06 02 2B 06"},
      {"1.2", "06 03 2B 81 00", "1.3.128", "06 03 2B 81 00"},
      {"1.2", "06 03 2B 80 01", "1.3.1", "06 02 2B 01"},  // a needless group
      // The same bytes are asked with and answered, and stand for another text.
      {"2.100", "06 01 B4", "4.20", "06 01 B4"},
      {"01.3", "06 01 2B", "1.3", "06 01 2B"},
      {"", "06 01 00", "0.0", "06 01 00"},
  };
  for (const auto& row : rows) {
    ReqRespPDU pdu = pduOf({row.asked});
    EXPECT_EQ(decode(response(binding(fromHex("05 00"), fromHex(row.answered))), pdu), 0) << row.answered;
    EXPECT_STREQ(pdu.getVarBind(0).getOID().getValue(), row.text);
    EXPECT_TRUE(encode(pdu, PDUGetRequest).ends_with(row.sent + std::string(" 05 00"))) << row.answered;
  }
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
      {"no version", element(0x30, community + pduBytes), -1},
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

TEST(DecodePacket, LeavesInThePDUWhatItCouldRead) {
  const Bytes bad = binding(fromHex("46 01 05"));
  const Bytes one = binding(fromHex("02 01 01"));
  const Bytes three = binding(fromHex("02 01 03"));
  // A bad binding leaves its slot to the next one.
  ReqRespPDU pdu = pduOf({"1.1", "1.2", "1.3"});
  EXPECT_EQ(decode(response(one + bad + three), pdu), -1);
  EXPECT_EQ(contentOf(pdu), "0 0 [1.3.6.1=2:1] [1.3.6.1=2:3] [1.3=5:]");
  ReqRespPDU fewer = pduOf({"1.1", "1.2"});
  EXPECT_EQ(decode(response(one), fewer), -1);
  EXPECT_EQ(decode(response(one + one, "02 01 07 02 01 02 02 01 01"), fewer), -1);
  EXPECT_EQ(contentOf(fewer), "2 1 [1.3.6.1=2:1] [1.3.6.1=2:1]");

  // What a set has sent must come back as the same type.
  ReqRespPDU set = pduOf({"1.1"});
  set.getVarBind(0).setValue(Counter(1));
  EXPECT_EQ(decode(response(binding(fromHex("42 01 02"))), set), -1);
  EXPECT_EQ(contentOf(set), "0 0 [1.1=65:1]");
  EXPECT_EQ(decode(response(binding(fromHex("41 01 02"))), set), 0);
  EXPECT_EQ(contentOf(set), "0 0 [1.3.6.1=65:2]");
  // An address that cannot take the octets keeps its own and counts as read, on purpose.
  set.getVarBind(0).setValue(IPv6Address("::1"));
  EXPECT_EQ(decode(response(binding(fromHex("40 04 01 02 03 04"))), set), 0);
  EXPECT_EQ(contentOf(set), "0 0 [1.3.6.1=64:::1]");
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
  ReqRespPDU pdu = pduOf({"1.3.6.1.2.1.43.11.1.1.9.1.4", "1.1", "1.2", "1.3.1", "1.4", "1.5", "1.6"});
  ReqRespPDU fresh(pdu);
  unsigned index = 0;
  const auto fill = [&](const SNMPDataType& value) { pdu.getVarBind(index++).setValue(value); };
  fill(Integer(-70000));
  fill(OctetString(std::string(700, 't').data(), 700));
  fill(Counter(0xFF7FFFFF));
  fill(Gauge(128));
  fill(TimeTicks(0x80000000));
  fill(IPAddress("10.0.255.1"));
  fill(OID("1.3.6.1.4.1.2147483647"));
  const std::string before = contentOf(pdu);
  Bytes bytes = fromHex(encode(pdu, PDUSetRequest));
  bytes[15] = 0xA2;  // the agent's echo
  EXPECT_EQ(decode(bytes, pdu), 0);
  EXPECT_EQ(contentOf(pdu), before);
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
  const auto decoded = [](const std::string& content) {
    TrapPDU trap;
    const int status = MessageCodec::decodeTrapPacket(trapOf(content), trap);
    return std::to_string(status) + ' ' + trap.getSourceAddress().getValue();
  };
  const std::string enterprise = kEnterprise;
  const std::string front = enterprise + kAgent;
  const std::string fields = "02 01 00 02 01 00 43 01 00";
  EXPECT_EQ(decoded(front + fields + "30 00"), "0 10.0.0.7");
  EXPECT_EQ(decoded(front + "02 04 00 00 00 06 02 04 7F FF FF FF 43 01 00 30 00"), "0 10.0.0.7");
  EXPECT_EQ(decoded(enterprise + fields + "30 00"), "0 0.0.0.0");            // no agent address
  EXPECT_EQ(decoded(enterprise + "40 00" + fields + "30 00"), "0 0.0.0.0");  // an empty one
  EXPECT_EQ(decoded(enterprise + "40 02 01 02" + fields + "30 00"), "-1 ");
  EXPECT_EQ(decoded(kAgent + fields + "30 00"), "-1 ");  // no enterprise
  for (const char* rest :
       // The generic type: 7, negative, of five bytes. The time: of another type.
       {"02 01 07 02 01 00 43 01 00 30 00", "02 01 FF 02 01 00 43 01 00 30 00",
        "02 05 00 00 00 00 06 02 01 00 43 01 00 30 00", "02 01 00 02 01 00 41 01 00 30 00",
        // The list: none, bad bindings.
        "02 01 00 02 01 00 43 01 00", "02 01 00 02 01 00 43 01 00 30 04 30 02 06 00",
        "02 01 00 02 01 00 43 01 00 30 02 31 00", "02 01 00 02 01 00 43 01 00 30 08 30 06 06 01 2B 46 01 00"}) {
    EXPECT_EQ(decoded(front + rest), "-1 ") << rest;
  }
}

}  // namespace
