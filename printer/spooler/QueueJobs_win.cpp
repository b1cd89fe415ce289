#include "QueueJobs.h"

#include <windows.h>
#include <winspool.h>

#include <cstdio>

#include "SpoolerBlock.h"
#include "Trace.h"

namespace zt {
namespace {

PrinterHandle OpenQueue(const std::wstring& queueName) {
  PrinterHandle printer;
  OpenPrinterW(const_cast<wchar_t*>(queueName.c_str()), printer.Receive(), nullptr);
  return printer;
}

}  // namespace

std::int32_t CountQueueJobs(const std::wstring& queueName) {
  constexpr DWORD kAllJobs = 0xFFFFFFFF;
  const PrinterHandle printer = OpenQueue(queueName);
  if (!printer) return -1;
  DWORD count = 0;
  const std::optional<SpoolerBlock> block = SpoolerBlock::Read([&](BYTE* buffer, DWORD size, DWORD* needed) {
    return EnumJobsW(printer.Get(), 0, kAllJobs, 1, buffer, size, needed, &count);
  });
  // A count that the reply has no room for is no count.
  if (!block || block->Items<JOB_INFO_1W>(count).size() != count) return -1;
  std::fputs((TextBuilder() << count << " jobs\n").Take().c_str(), stdout);
  return static_cast<std::int32_t>(count);
}

bool SendRawToQueue(const std::wstring& queueName, std::string_view bytes) {
  const PrinterHandle printer = OpenQueue(queueName);
  if (!printer) {
    ZT_TRACE(Information, "[ZT] HardStop - OpenPrinter error ");
    return false;
  }
  wchar_t documentName[] = L"Printer setting";
  wchar_t dataType[] = L"RAW";
  DOC_INFO_1W document{documentName, nullptr, dataType};
  if (StartDocPrinterW(printer.Get(), 1, reinterpret_cast<BYTE*>(&document)) == 0) {
    ZT_TRACE(Information, "[ZT] HardStop - StartDocPrinter error");
    return false;
  }
  StartPagePrinter(printer.Get());
  const auto size = static_cast<DWORD>(bytes.size());
  DWORD written = 0;
  if (!WritePrinter(printer.Get(), const_cast<char*>(bytes.data()), size, &written) || written != size) {
    // The document is not ended, on purpose: closing the queue drops the unfinished job.
    ZT_TRACE(Information, "[ZT]Command Write error");
    return false;
  }
  EndPagePrinter(printer.Get());
  EndDocPrinter(printer.Get());
  return true;
}

}  // namespace zt
