// Memory that runs out: no operation throws, and none leaves a half of what it was to store.

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "FailingMemory.h"
#include "HexBytes.h"
#include "MessageCodec.h"
#include "PDUText.h"
#include "PrinterRecord.h"

namespace {

const OID kLongName("1.3.6.1.4.1.1.2.3.4.5.6.7.8.9.10.11.12.13.14.15.16.17.18");
const OctetString kLongText("a text of more than a few bytes", 31);

std::string stateOf(const ReqRespPDU& pdu) {
  ReqRespPDU copy(pdu);
  Bytes sent(ztsnmp::MessageCodec::kMaxMessage);
  ztsnmp::MessageCodec::setHeader(copy, PDUSetRequest, 0);
  const int length = ztsnmp::MessageCodec::encodePacket(copy, "x", sent);
  return textOf(pdu) + ' ' + std::to_string(length) + ' ' + toHex(sent);
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
  const VarBind small = bound("1.3.6.1", Integer(7));
  const VarBind large = bound(kLongName.getValue(), kLongText);
  const ReqRespPDU pdu(&small, 1);
  check("OID::setValue", pdu, [](ReqRespPDU& it) { return it.getVarBind(0).getOID().setValue(kLongName.getValue()); });
  check("VarBind::setOID", pdu, [](ReqRespPDU& it) { return it.getVarBind(0).setOID(kLongName); });
  check("VarBind::setValue", pdu, [](ReqRespPDU& it) { return it.getVarBind(0).setValue(kLongText); });
  check("VarBind::setValue of a name", pdu, [](ReqRespPDU& it) { return it.getVarBind(0).setValue(kLongName); });
  check("setVarBind", pdu, [&](ReqRespPDU& it) { return it.setVarBind(0, large); });
  check("addVarBind", pdu, [&](ReqRespPDU& it) { return it.addVarBind(large); });
  check("setVarBindList", pdu, [&](ReqRespPDU& it) { return it.setVarBindList(&large, 1); });

  const Bytes answered = element(0x30, element(6, Bytes(17, 43)) + element(4, Bytes(22, 'a')));
  const Bytes answer =
      element(0x30, fromHex("02 01 00 04 01 78") +
                        element(0xA2, fromHex("02 01 00 02 01 00 02 01 00") + element(0x30, answered)));
  check("decodePacket", ReqRespPDU(std::array{bound("1.3.6.1", Null())}.data(), 1),
        [&](ReqRespPDU& it) { return ztsnmp::MessageCodec::decodePacket(answer, it); });

  const Target target;
  check("setReadCommunity", target, [](Target& it) { return it.setReadCommunity("twenty-five characters ab"); });
  check("setWriteCommunity", target, [](Target& it) { return it.setWriteCommunity("twenty-five characters ab"); });
  const IPv6Address address("fe80::1234:5678:9abc:def0%12");
  check("setIPv6Address", target, [&](Target& it) { return it.setIPv6Address(address); });

  const VarBind texts[] = {bound("1.3.6.1.2.1.1.5.0", kLongText), bound("1.3.6.1.2.1.25.3.2.1.3.1", kLongText)};
  const ReqRespPDU described(texts, 2);
  check("makePrinterObject", Printer(),
        [&](Printer& it) { return ztsnmp::PrinterRecord::makePrinterObject(described, it); });
  const Bytes advertisement = fromHex("00 02 00 07") + Bytes(62, 'n');  // a print server whose name fills its field
  check("decodeSAPPacket", Printer(),
        [&](Printer& it) { return ztsnmp::PrinterRecord::decodeSAPPacket(advertisement, it); });
}

}  // namespace
