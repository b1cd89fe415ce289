#include "QueueServices.h"

#include <windows.h>

#include "HostVersion.h"
#include "PrinterFactory.h"
#include "ProgramPath.h"
#include "QueueJobs.h"

namespace zt {
QueueServices LocalQueueServices() {
  return {.createPrinter = [](const std::wstring& queueName) { return CreatePrinterForQueue(queueName); },
          .countJobs = CountQueueJobs,
          .sendRawJob = SendRawToQueue,
          .readHostVersion = [] { return ReadHostVersion(ProgramPath()); },
          .pause = SystemPause};
}

}  // namespace zt
