#include "PrinterInformation.h"

#include <windows.h>
#include <winspool.h>

#include "Trace.h"

namespace zt {

bool PrinterInformation::ReadPrinterInfo(const std::wstring& queueName) {
  *this = PrinterInformation();
  PrinterHandle printer;
  SetLastError(ERROR_SUCCESS);
  if (!OpenPrinterW(const_cast<wchar_t*>(queueName.c_str()), printer.Receive(), nullptr)) return false;
  std::optional<SpoolerBlock> block = SpoolerBlock::Read(
      [&](BYTE* buffer, DWORD size, DWORD* needed) { return GetPrinterW(printer.Get(), 2, buffer, size, needed); });
  if (!block) return false;
  const auto items = block->Items<PRINTER_INFO_2W>(1);
  if (items.empty()) return false;
  serverName_ = block->Text(items[0].pServerName);
  portName_ = block->Text(items[0].pPortName);
  driverName_ = block->Text(items[0].pDriverName);
  isConnection_ = (items[0].Attributes & PRINTER_ATTRIBUTE_NETWORK) != 0;
  block_ = std::move(block);
  return true;
}

bool CheckQueueIsLocal(const PrinterInformation& information) {
  ZT_TRACE(Information, "Checking spooler info...");
  if (!information.WasRead()) {
    ZT_TRACE(Warning, "Wrong QName!!! bye~");
    return false;
  }
  if (information.IsConnection()) {
    ZT_TRACE(Warning, "Shared !!! bye~");
    return false;
  }
  return true;
}

}  // namespace zt
