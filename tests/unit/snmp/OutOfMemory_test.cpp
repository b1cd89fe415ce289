// Memory that runs out: no operation throws, and none leaves a half of what it was to store.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <span>
#include <string>

#include "FailingMemory.h"
#include "HexBytes.h"
#include "MessageCodec.h"
#include "PrinterRecord.h"
#include "ztsnmp/ztsnmp.h"

namespace {

const OID kLongName("1.3.6.1.4.1.1.2.3.4.5.6.7.8.9.10.11.12.13.14.15.16.17.18");
const OctetString kLongText("a text of more than a few bytes", 31);

/// What a PDU shows, and what it sends.
std::string stateOf(const ReqRespPDU& pdu) {
  ReqRespPDU copy(pdu);
  std::array<std::uint8_t, ztsnmp::MessageCodec::kMaxMessage> buffer;
  ztsnmp::MessageCodec::setHeader(copy, PDUSetRequest, 0);
  const int length = ztsnmp::MessageCodec::encodePacket(copy, "x", buffer);
  std::string text = toHex(std::span(buffer).first(static_cast<std::size_t>(length)));
  for (int i = 0; i < copy.getVarBindCount(); ++i) {
    text = text + ' ' + copy.getVarBind(static_cast<unsigned>(i)).getOID().getValue();
  }
  return text;
}

std::string stateOf(const Target& target) {
  return std::string(target.getReadCommunity()) + ' ' + target.getWriteCommunity() + ' ' +
         target.getIPv6Address(0).getValue();
}

std::string stateOf(const Printer& printer) {
  return std::string(printer.getName().toString()) + ' ' + printer.getDescription().toString() + ' ' +
         printer.getIPXAddress().getValue();
}

/// Lets the change fail at each of its allocations in turn, until there are enough.
template <typename Object, typename Change>
void check(const char* what, const Object& before, Change change) {
  for (int granted = 0;; ++granted) {
    Object object(before);
    grantAllocations(granted);
    const int status = change(object);
    if (!endShortage()) {
      EXPECT_EQ(status, 0) << what;
      EXPECT_NE(stateOf(object), stateOf(before)) << what;
      EXPECT_GT(granted, 0) << what << " needs no memory";
      return;
    }
    EXPECT_EQ(status, -1) << what << ", " << granted << " granted";
    EXPECT_EQ(stateOf(object), stateOf(before)) << what << ", " << granted << " granted";
  }
}

TEST(OutOfMemory, KeepsWhatWas) {
  VarBind small{OID("1.3.6.1")};
  small.setValue(Integer(7));
  VarBind large(kLongName);
  large.setValue(kLongText);
  const ReqRespPDU pdu(&small, 1);
  check("OID::setValue", pdu, [](ReqRespPDU& it) { return it.getVarBind(0).getOID().setValue(kLongName.getValue()); });
  check("VarBind::setOID", pdu, [](ReqRespPDU& it) { return it.getVarBind(0).setOID(kLongName); });
  check("VarBind::setValue", pdu, [](ReqRespPDU& it) { return it.getVarBind(0).setValue(kLongText); });
  check("VarBind::setValue of a name", pdu, [](ReqRespPDU& it) { return it.getVarBind(0).setValue(kLongName); });
  check("setVarBind", pdu, [&](ReqRespPDU& it) { return it.setVarBind(0, large); });
  check("addVarBind", pdu, [&](ReqRespPDU& it) { return it.addVarBind(large); });
  check("setVarBindList", pdu, [&](ReqRespPDU& it) { return it.setVarBindList(&large, 1); });

  const Bytes answer = fromHex(
      "30 40 02 01 00 04 01 78 A2 38 02 01 00 02 01 00 02 01 00 30 2D 30 2B "
      "06 11 2B 06 01 04 01 01 02 03 04 05 06 07 08 09 0A 0B 0C "
      "04 16 61 62 63 64 65 66 67 68 69 6A 6B 6C 6D 6E 6F 70 71 72 73 74 75 76");
  VarBind asked{OID("1.3.6.1")};
  asked.setValue(Null());
  check("decodePacket", ReqRespPDU(&asked, 1),
        [&](ReqRespPDU& it) { return ztsnmp::MessageCodec::decodePacket(answer, it); });

  const Target target;
  check("setReadCommunity", target, [](Target& it) { return it.setReadCommunity("twenty-five characters ab"); });
  check("setWriteCommunity", target, [](Target& it) { return it.setWriteCommunity("twenty-five characters ab"); });

  ReqRespPDU described;
  for (const char* name : {"1.3.6.1.2.1.1.5.0", "1.3.6.1.2.1.25.3.2.1.3.1"}) {
    VarBind text{OID(name)};
    text.setValue(kLongText);
    described.addVarBind(text);
  }
  check("makePrinterObject", Printer(),
        [&](Printer& it) { return ztsnmp::PrinterRecord::makePrinterObject(described, it); });
  Bytes advertisement(66, 'n');  // a general response of one print server whose name fills its field
  const Bytes head{0, 2, 0, 7};
  std::copy(head.begin(), head.end(), advertisement.begin());
  check("decodeSAPPacket", Printer(),
        [&](Printer& it) { return ztsnmp::PrinterRecord::decodeSAPPacket(advertisement, it); });

  const IPv6Address address("fe80::1234:5678:9abc:def0%12");
  check("setIPv6Address", target, [&](Target& it) { return it.setIPv6Address(address); });
}

}  // namespace
