#include "MessageCodec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "HexBytes.h"
#include "PDUText.h"

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

TEST(EncodePacket, WritesNames) {
  for (const char* row : {"1.3.127.128.16383.16384 = 06 09 2B 7F 81 00 FF 7F 81 80 00",
                          "1.3.4294967295 = 06 06 2B 8F FF FF FF 7F", "2.39 = 06 01 77",
                          // Not as they would be read: a second arc above 39, missing arcs (0), leading zeros.
                          "2.100 = 06 01 B4", "1 = 06 01 28", " = 06 01 00", "0001.0003 = 06 01 2B"}) {
    const auto [name, bytes] = parted(row);
    ReqRespPDU pdu = pduOf({name.c_str()});
    EXPECT_TRUE(encode(pdu, PDUGetRequest).ends_with(' ' + bytes + " 05 00")) << row;
  }
}

TEST(EncodePacket, LeavesOutABindingThatHasNoEncoding) {
  // No 32-bit numbers, and first arcs that share no byte.
  ReqRespPDU names = pduOf({"1.3.4294967296", "1.3.42949672950", "6.16", "4.1000", "107374182.16"});
  EXPECT_TRUE(encode(names, PDUGetRequest).ends_with(" 02 01 00 30 00"));
  ReqRespPDU pdu = pduOf({"1.1", "1.2", "1.3", "1.4", "1.5"});
  pdu.getVarBind(0).setValue(Integer(1));
  pdu.getVarBind(1).setValue(OctetString("", 0));
  pdu.getVarBind(2).setValue(IPv6Address("::1"));  // has a tag, and no encoding
  pdu.getVarBind(3).setValue(IPAddress());
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
  for (std::size_t size = 0; size <= 54; ++size) {
    Bytes out(size);
    EXPECT_EQ(MessageCodec::encodePacket(pdu, "public", out), size < 54 ? -1 : 54) << size;
  }
}

// ---- responses

const Bytes kName = fromHex("06 03 2B 06 01");
const Bytes kNull = fromHex("05 00");
constexpr const char* kFields = "02 01 07 02 01 00 02 01 00";

Bytes message(std::uint8_t pduTag, const Bytes& content) {
  return element(0x30, fromHex("02 01 00 04 01 78") + element(pduTag, content));
}

Bytes response(const Bytes& bindings, const char* fields = kFields) {
  return message(0xA2, fromHex(fields) + element(0x30, bindings));
}

Bytes binding(const Bytes& value, const Bytes& name = kName) { return element(0x30, name + value); }

int decode(const Bytes& bytes, ReqRespPDU& pdu) { return MessageCodec::decodePacket(bytes, pdu); }

TEST(Codec, ReadsEachTypeOfValueAndWritesItBack) {
  const auto check = [](const Bytes& value, const std::string& text, const std::string& written) {
    ReqRespPDU pdu = pduOf({"1.2.3"});
    EXPECT_EQ(decode(response(binding(value)), pdu), 0) << written;
    EXPECT_EQ(pdu.getVarBind(0).getValue().getDataType(), value[0]);
    EXPECT_EQ(textOf(pdu), " 1.3.6.1=" + text);
    ReqRespPDU copy(pdu);
    EXPECT_TRUE(encode(copy, PDUSetRequest).ends_with(toHex(kName) + ' ' + written)) << written;
  };
  for (const char* row :
       {"02 01 00 = 0", "02 01 7F = 127", "02 02 00 80 = 128", "02 03 00 80 00 = 32768",
        "02 04 7F FF FF FF = 2147483647", "02 01 FF = -1", "02 01 80 = -128", "02 02 FF 7F = -129",
        "02 04 80 00 00 01 = -2147483647", "41 01 00 = 0", "41 02 00 FF = 255", "42 05 00 80 00 00 00 = 2147483648",
        "43 05 00 FF 7F FF FF = 4286578687", "05 00 = ", "04 03 61 62 63 = abc", "40 04 C0 A8 01 FF = 192.168.1.255",
        // 40 is divided out of any first byte.
        "06 03 2B 06 01 = 1.3.6.1", "06 06 2B 87 FF FF FF 7F = 1.3.2147483647", "06 01 FF = 6.15"}) {
    const auto [bytes, text] = parted(row);
    check(fromHex(bytes), text, bytes);
  }
  for (const std::size_t length : {127U, 128U, 255U, 256U, 1024U}) {
    const Bytes value = element(4, Bytes(length, 'x'));
    check(value, std::string(length, 'x'), toHex(value));
  }
  // Not minimal; what follows the value is not looked at.
  check(fromHex("02 04 00 00 00 05"), "5", "02 01 05");
  check(fromHex("02 01 05 02 01 06"), "5", "02 01 05");
  check(fromHex("04 84 00 00 00 03 61 62 63"), "abc", "04 03 61 62 63");
  check(fromHex("06 03 2B 80 01"), "1.3.1", "06 02 2B 01");
  // Taken as negative, on purpose.
  check(fromHex("41 01 80"), "4294967168", "41 02 00 80");
  // From FF800000 on the shortening drops bytes that count; kept on purpose.
  check(fromHex("41 05 00 FF 80 00 00"), "4286578688", "41 04 00 80 00 00");
  check(fromHex("41 05 00 FF FF FF FF"), "4294967295", "41 02 00 FF");
  // Up to 25 octets are an address.
  check(fromHex("40 19 01 02 03 04") + Bytes(21), "1.2.3.4", "40 04 01 02 03 04");
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
        // Counter64, noSuchObject, no value at all.
        "46 01 05", "80 00", ""}) {
    ReqRespPDU pdu = pduOf({"1.2.3"});
    EXPECT_EQ(decode(response(binding(fromHex(value))), pdu), -1) << value;
    EXPECT_EQ(textOf(pdu), " 1.2.3=") << value;
  }
}

// The same bytes are asked with and answered, and stand for another text.
TEST(DecodePacket, KeepsNamesSuchThatTheyGoOutAsTheyAreAnswered) {
  for (const char* row : {"2.100 = 4.20", "01.3 = 1.3", " = 0.0", "1.3 = 1.3"}) {
    const auto [asked, text] = parted(row);
    ReqRespPDU pdu = pduOf({asked.c_str()});
    Bytes bytes = fromHex(encode(pdu, PDUGetRequest, ""));
    bytes[7] = 0xA2;
    EXPECT_EQ(decode(bytes, pdu), 0) << row;
    EXPECT_EQ(textOf(pdu), ' ' + text + '=');
    bytes[7] = 0xA0;
    EXPECT_EQ(encode(pdu, PDUGetRequest, ""), toHex(bytes)) << row;
  }
}

TEST(DecodePacket, RefusesOtherShapes) {
  const Bytes good = binding(fromHex("02 01 05"));
  const Bytes fields = fromHex(kFields);
  const Bytes pduBytes = element(0xA2, fields + element(0x30, good));
  const struct {
    const char* what;
    Bytes bytes;
    int status;
  } rows[] = {
      {"empty", {}, -1},
      {"other outer tag", element(0x31, fromHex("02 01 00 04 01 78") + pduBytes), -1},
      {"no version", element(0x30, fromHex("04 01 78") + pduBytes), -1},
      {"version 2", element(0x30, fromHex("02 01 01 04 01 78") + pduBytes), -1},
      {"community of another type", element(0x30, fromHex("02 01 00 02 01 00") + pduBytes), -1},
      {"another community", element(0x30, fromHex("02 01 00 04 03 61 62 63") + pduBytes), 0},  // not compared
      {"a trap", message(0xA4, fields + element(0x30, good)), -1},
      {"request-id of two bytes", response(good, "02 02 00 07 02 01 00 02 01 00"), -1},
      {"fields of another type", response(good, "04 01 63 04 01 00 04 01 00"), 0},  // only their places count
      {"fields missing", message(0xA2, fromHex("02 01 07 02 01 00")), -1},
      {"list missing", message(0xA2, fields), -1},
      {"list of another tag", message(0xA2, fields + element(0x31, good)), -1},
      {"no binding", response({}), -1},
      {"binding of another tag", response(element(0x31, kName + kNull)), -1},
      {"name of another tag", response(binding(kNull, fromHex("0D 01 2B"))), -1},
      // 127 arcs of one digit and a first byte of two are the longest text of 255 characters.
      {"longest name", response(binding(kNull, element(6, Bytes(127, 1)))), 0},
      {"longer name", response(binding(kNull, element(6, Bytes(128, 1)))), -1},
      {"longer text", response(binding(element(4, Bytes(1025, 'x')))), -1},
      {"one binding too many", response(good + good), 0},  // the PDU takes what it asked for
      {"too long", response(good) + Bytes(2048 - response(good).size() + 1), -1},
      {"as long as can be", response(good) + Bytes(2048 - response(good).size()), 0},
  };
  for (const auto& row : rows) {
    ReqRespPDU pdu = pduOf({"1.2.3"});
    EXPECT_EQ(decode(row.bytes, pdu), row.status) << row.what;
  }
}

TEST(DecodePacket, LeavesInThePDUWhatItCouldRead) {
  const Bytes one = binding(fromHex("02 01 01"));
  const Bytes three = binding(fromHex("02 01 03"));
  // A bad binding leaves its slot to the next one.
  ReqRespPDU pdu = pduOf({"1.1", "1.2", "1.3"});
  EXPECT_EQ(decode(response(one + binding(fromHex("46 01 05")) + three), pdu), -1);
  EXPECT_EQ(textOf(pdu), " 1.3.6.1=1 1.3.6.1=3 1.3=");
  EXPECT_EQ(decode(response(three + three + three, "02 01 07 02 01 02 02 01 01"), pdu), -1);
  EXPECT_EQ(textOf(pdu), " 1.3.6.1=3 1.3.6.1=3 1.3.6.1=3");
  EXPECT_EQ(pdu.getErrorStatus(), 2);
  EXPECT_EQ(pdu.getErrorIndex(), 1);

  // What a set has sent must come back as the same type.
  ReqRespPDU set = pduOf({"1.1"});
  set.getVarBind(0).setValue(Counter(1));
  EXPECT_EQ(decode(response(binding(fromHex("42 01 02"))), set), -1);
  EXPECT_EQ(textOf(set), " 1.1=1");
  EXPECT_EQ(decode(response(binding(fromHex("41 01 02"))), set), 0);
  EXPECT_EQ(textOf(set), " 1.3.6.1=2");
  // An address that cannot take the octets keeps its own and counts as read, on purpose.
  set.getVarBind(0).setValue(IPv6Address("::1"));
  EXPECT_EQ(decode(response(binding(fromHex("40 04 01 02 03 04"))), set), 0);
  EXPECT_EQ(textOf(set), " 1.3.6.1=::1");
}

// ---- traps

TEST(DecodeTrapPacket, ReadsATrapOrNothing) {
  const std::string enterprise = "06 01 2B ";
  const std::string front = enterprise + "40 04 0A 00 00 07 ";
  const std::string rest = "02 01 00 02 01 00 43 01 00 30 00";
  const std::string fields = "02 01 06 02 02 01 02 43 02 01 00 ";
  const struct {
    const char* what;
    std::string content;
    std::string read = "";
  } rows[] = {
      {"a trap", front + fields + "30 0C 30 0A 06 03 2B 06 01 04 03 61 62 63", "1.3 10.0.0.7 6 258 256 1.3.6.1=abc"},
      {"no agent address", enterprise + rest, "1.3 0.0.0.0 0 0 0"},
      {"an empty one", enterprise + "40 00" + rest, "1.3 0.0.0.0 0 0 0"},
      {"a short one", enterprise + "40 02 01 02" + rest},
      {"no enterprise", front.substr(enterprise.size()) + rest},
      {"generic type 7", front + "02 01 07 02 01 00 43 01 00 30 00"},
      {"a negative one", front + "02 01 FF 02 01 00 43 01 00 30 00"},
      {"one of five bytes", front + "02 05 00 00 00 00 06 02 01 00 43 01 00 30 00"},
      {"time of another type", front + "02 01 00 02 01 00 41 01 00 30 00"},
      {"no list", front + fields},
      {"no binding in it", front + fields + "30 02 31 00"},
      {"a bad value", front + fields + "30 08 30 06 06 01 2B 46 01 00"},
  };
  for (const auto& row : rows) {
    const Bytes bytes = message(0xA4, fromHex(row.content));
    _MESSAGE delivered{};
    delivered.length = static_cast<std::uint32_t>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), delivered.data);
    TrapPDU trap;
    EXPECT_EQ(MessageCodec::decodeTrapPacket(&delivered, trap), row.read.empty() ? -1 : 0) << row.what;
    if (row.read.empty()) continue;
    EXPECT_EQ(std::string(trap.getEnterprise().getValue()) + ' ' + trap.getSourceAddress().getValue() + ' ' +
                  std::to_string(trap.getTrapType()) + ' ' + std::to_string(trap.getTrapCode()) + ' ' +
                  trap.getTrapTime().toString() + textOf(trap),
              row.read);
    for (const std::uint32_t length : {delivered.length - 1, 1565U}) {  // more than there is room for
      delivered.length = length;
      EXPECT_EQ(MessageCodec::decodeTrapPacket(&delivered, trap), -1);
    }
  }
  TrapPDU trap;
  EXPECT_EQ(MessageCodec::decodeTrapPacket(static_cast<const _MESSAGE*>(nullptr), trap), -1);
}

}  // namespace
