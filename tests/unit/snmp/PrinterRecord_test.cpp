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
  const Bytes general = fromHex("00 02");
  const Bytes fileServer = service("00 04", "FILES");
  const Bytes networkPrinter = service("03 0C", "PRINTER");
  const std::string longest(48, 'N');  // without a NUL
  const struct {
    Bytes packet;
    int status;
    std::string name;
  } rows[] = {
      {general + fileServer + networkPrinter + service("03 0C", "OTHER"), 0, "PRINTER"},
      {fromHex("00 04") + service("00 07", longest), 0, longest},
      {fromHex("00 01") + networkPrinter, -1, ""},  // a request
      {general + fileServer, -1, ""},
      {general + Bytes(networkPrinter.begin(), networkPrinter.end() - 1), -1, ""},
      {fromHex("00"), -1, ""},
  };
  for (const auto& row : rows) {
    Printer printer;
    EXPECT_EQ(PrinterRecord::decodeSAPPacket(row.packet, printer), row.status) << row.name;
    EXPECT_EQ(printer.getName().toString(), row.name);
    EXPECT_STREQ(printer.getIPXAddress().getValue(), row.status == 0 ? "000000AB00000ABCDEF1" : "");
  }
}

TEST(PrinterRecord, TakesWhatAnAnswerHolds) {
  const VarBind bindings[] = {bound("1.3.6.1.2.1.1.5.0", Integer(1)),  // a name of the wrong type
                              bound("1.3.6.1.2.1.1.5.0", OctetString("hall", 4)),
                              bound("1.3.6.1.2.1.25.3.2.1.3.1", OctetString("model 7", 7)),
                              bound("1.3.6.1.2.1.25.3.5.1.1.1", Integer(3))};
  Printer printer;
  EXPECT_EQ(PrinterRecord::makePrinterObject(ReqRespPDU(bindings, 1), printer), -1);
  EXPECT_EQ(PrinterRecord::makePrinterObject(ReqRespPDU(bindings, 4), printer), 0);
  EXPECT_STREQ(printer.getName().toString(), "hall");
  EXPECT_STREQ(printer.getDescription().toString(), "model 7");
  EXPECT_EQ(printer.getStatus().getValue(), 3);
}

}  // namespace
