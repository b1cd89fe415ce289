#pragma once

#include <memory>
#include <string>

#include "KVFPrinter.h"

namespace zt {

// CreatePrinterForQueue makes the access to the printer behind a print queue, by the queue's port: Web Services for
// Devices, then USB, then standard TCP/IP. Null when the queue cannot be read or its port leads to no printer.
std::unique_ptr<KVFPrinter> CreatePrinterForQueue(const std::wstring& queueName);

}  // namespace zt
