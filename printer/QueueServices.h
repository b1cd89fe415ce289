#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Clock.h"
#include "KVFPrinter.h"

namespace zt {

// QueueServices is what the provider needs of the computer that it runs on.
struct QueueServices {
  // Makes the printer behind a queue; null without one.
  std::function<std::unique_ptr<KVFPrinter>(const std::wstring& queueName)> createPrinter;

  // Counts the jobs of a queue; negative when that is not possible.
  std::function<std::int32_t(const std::wstring& queueName)> countJobs;

  // Prints the bytes as one raw job of a queue, and traces why it can't.
  std::function<bool(const std::wstring& queueName, std::string_view bytes)> sendRawJob;

  // Answers the version of the installed driver package; nothing without one.
  std::function<std::optional<std::string>()> readHostVersion;

  Pause pause;
};

// LocalQueueServices serves with the spooler, the printers and the files of this computer.
QueueServices LocalQueueServices();

}  // namespace zt
