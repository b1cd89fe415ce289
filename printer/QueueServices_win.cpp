#include <windows.h>

#include "HostVersion.h"
#include "PrinterFactory.h"
#include "QueueJobs.h"
#include "QueueServices.h"

namespace zt {
namespace {

std::optional<std::string> ReadVersionBesideProgram() {
  wchar_t path[MAX_PATH];
  const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
  if (length == 0 || length == MAX_PATH) return std::nullopt;
  return ReadHostVersion(path);
}

}  // namespace

QueueServices LocalQueueServices() {
  return {.createPrinter = CreatePrinterForQueue,
          .countJobs = CountQueueJobs,
          .sendRawJob = SendRawToQueue,
          .readHostVersion = ReadVersionBesideProgram,
          .sleep = [](std::uint32_t milliseconds) { ::Sleep(milliseconds); }};
}

}  // namespace zt
