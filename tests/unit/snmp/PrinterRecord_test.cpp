#include "PrinterRecord.h"

#include <gtest/gtest.h>

#include <string>

#include "HexBytes.h"

namespace {

using ztsnmp::PrinterRecord;

Bytes service(const char* type, const std::string& name) {
  Bytes entry = fromHex(type) + Bytes(name.begin(), name.end());
  entry.resize(2 + 48);
  return entry + fromHex("00 00 00 AB 00 00 0A BC DE F1 04 51 00 01");
}

TEST(PrinterRecord, ReadsTheFirstPrinterOfAnAdvertisement) {
  const Bytes fileServer = service("00 04", "FILES");
  const Bytes packet = fromHex("00 02") + fileServer + service("03 0C", "PRINTER") + service("03 0C", "OTHER");
  Printer printer;
  EXPECT_EQ(PrinterRecord::decodeSAPPacket(packet, printer), 0);
  EXPECT_STREQ(printer.getName().toString(), "PRINTER");
  EXPECT_STREQ(printer.getIPXAddress().getValue(), "000000AB00000ABCDEF1");
  EXPECT_EQ(printer.isValid(), 0);

  Printer other;
  EXPECT_EQ(PrinterRecord::decodeSAPPacket(fromHex("00 02") + service("00 07", std::string(48, 'N')), other), 0);
  EXPECT_EQ(std::string(other.getName().toString()), std::string(48, 'N'));  // a name without its NUL

  Printer untouched;
  EXPECT_EQ(PrinterRecord::decodeSAPPacket(fromHex("00 01") + service("03 0C", "REQUEST"), untouched), -1);
  EXPECT_EQ(PrinterRecord::decodeSAPPacket(fromHex("00 02") + fileServer, untouched), -1);
  const Bytes whole = fromHex("00 04") + service("03 0C", "PRINTER");
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_EQ(PrinterRecord::decodeSAPPacket(std::span(whole).first(length), untouched), -1) << length;
  }
  EXPECT_STREQ(untouched.getName().toString(), "");
}

TEST(PrinterRecord, TakesWhatAnAnswerHolds) {
  ReqRespPDU answer;
  Printer printer;
  EXPECT_EQ(PrinterRecord::makePrinterObject(answer, printer), -1);
  const auto add = [&answer](const char* name, const SNMPDataType& value) {
    VarBind binding{OID(name)};
    binding.setValue(value);
    answer.addVarBind(binding);
  };
  add("1.3.6.1.2.1.1.5.0", Integer(1));  // a name of the wrong type
  EXPECT_EQ(PrinterRecord::makePrinterObject(answer, printer), -1);
  add("1.3.6.1.2.1.1.5.0", OctetString("hall", 4));
  add("1.3.6.1.2.1.25.3.2.1.3.1", OctetString("model 7", 7));
  add("1.3.6.1.2.1.25.3.5.1.1.1", Integer(3));
  EXPECT_EQ(PrinterRecord::makePrinterObject(answer, printer), 0);
  EXPECT_STREQ(printer.getName().toString(), "hall");
  EXPECT_STREQ(printer.getDescription().toString(), "model 7");
  EXPECT_EQ(printer.getStatus().getValue(), 3);
}

}  // namespace
