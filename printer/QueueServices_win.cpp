#include <windows.h>

#include "HostVersion.h"
#include "PrinterFactory.h"
#include "ProgramPath.h"
#include "QueueJobs.h"
#include "QueueServices.h"

namespace zt {
QueueServices LocalQueueServices() {
  return {.createPrinter = CreatePrinterForQueue,
          .countJobs = CountQueueJobs,
          .sendRawJob = SendRawToQueue,
          .readHostVersion = [] { return ReadHostVersion(ProgramPath()); },
          .sleep = [](std::uint32_t milliseconds) { ::Sleep(milliseconds); }};
}

}  // namespace zt
