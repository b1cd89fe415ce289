#include "PrinterRecord.h"

#include <gtest/gtest.h>

#include <string>

#include "HexBytes.h"
#include "PDUText.h"

namespace {

using ztsnmp::PrinterRecord;

Bytes service(const char* type, const std::string& name) {
  Bytes entry = fromHex(type) + Bytes(name.begin(), name.end());
  entry.resize(2 + 48);
  return entry + fromHex("00 00 00 AB 00 00 0A BC DE F1 04 51 00 01");
}

TEST(PrinterRecord, ReadsTheFirstPrinterOfAnAdvertisement) {
  const Bytes fileServer = service("00 04", "FILES");
  const Bytes other = service("03 0C", "OTHER");
  const std::string longest(48, 'N');  // without a NUL
  const struct {
    Bytes packet;
    std::string name = "";
  } rows[] = {
      {fromHex("00 02") + fileServer + service("03 0C", "PRINTER") + other, "PRINTER"},
      {fromHex("00 04") + service("00 07", longest), longest},
      {fromHex("00 01") + other},  // a request
      {fromHex("00 02") + fileServer},
      {fromHex("00 02") + Bytes(other.begin(), other.end() - 1)},
      {fromHex("00")},
  };
  for (const auto& [packet, name] : rows) {
    Printer printer;
    EXPECT_EQ(PrinterRecord::decodeSAPPacket(packet, printer), name.empty() ? -1 : 0) << toHex(packet);
    EXPECT_EQ(printer.getName().toString(), name);
    EXPECT_STREQ(printer.getIPXAddress().getValue(), name.empty() ? "" : "000000AB00000ABCDEF1");
  }
}

TEST(PrinterRecord, TakesWhatAnAnswerHolds) {
  const VarBind bindings[] = {bound("1.3.6.1.2.1.1.5.0", Integer(1)),  // a name of the wrong type
                              bound("1.3.6.1.2.1.1.5.0", OctetString("hall", 4)),
                              bound("1.3.6.1.2.1.25.3.2.1.3.1", OctetString("model 7", 7)),
                              bound("1.3.6.1.2.1.25.3.5.1.1.1", Integer(3))};
  Printer printer;
  EXPECT_EQ(PrinterRecord::makePrinterObject(ReqRespPDU(bindings, 1), printer), -1);
  EXPECT_EQ(printer.getStatus().getValue(), -1);  // not known
  EXPECT_EQ(PrinterRecord::makePrinterObject(ReqRespPDU(bindings, 4), printer), 0);
  EXPECT_STREQ(printer.getName().toString(), "hall");
  EXPECT_STREQ(printer.getDescription().toString(), "model 7");
  EXPECT_EQ(printer.getStatus().getValue(), 3);
}

}  // namespace
