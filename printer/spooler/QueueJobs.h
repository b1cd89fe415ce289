#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zt {

// CountQueueJobs returns how many jobs a queue holds, and writes the number to the standard output; -1 when the queue
// cannot be opened or asked.
std::int32_t CountQueueJobs(const std::wstring& queueName);

// SendRawToQueue prints the bytes, as they are, as one job of data type RAW. It traces what fails.
[[nodiscard]] bool SendRawToQueue(const std::wstring& queueName, std::string_view bytes);

}  // namespace zt
