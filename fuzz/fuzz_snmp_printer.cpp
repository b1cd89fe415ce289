// What is found of a printer: a service advertisement, and the answer with its name and status.

#include <string_view>

#include "MessageCodec.h"
#include "PrinterRecord.h"
#include "Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using ztsnmp::PrinterRecord;
  Printer printer;
  const int advertised = PrinterRecord::decodeSAPPacket({data, size}, printer);
  const std::string_view address = printer.getIPXAddress().getValue();
  require(address.size() == (advertised == 0 ? 20U : 0U), "an advertised printer has an address");
  require(std::string_view(printer.getName().toString()).size() <= 48, "a name has 48 characters at most");

  ReqRespPDU answer;
  for (int i = 0; i < 3; ++i) answer.addVarBind(VarBind{OID("1.3.6.1")});
  static_cast<void>(ztsnmp::MessageCodec::decodePacket({data, size}, answer));
  const int filled = PrinterRecord::makePrinterObject(answer, printer);
  require(filled == 0 || printer.getIPXAddress().getValue() == address, "what fails changes nothing");
  return 0;
}
