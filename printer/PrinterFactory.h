#pragma once

#include <memory>
#include <string>

#include "ExchangeGate.h"
#include "KVFPrinter.h"
#include "PrinterTarget.h"

namespace zt {

class PrinterInformation;

// FindTarget finds the printer behind the port of a queue that was read: by Web Services for Devices, then USB, then
// standard TCP/IP. The kind None when the port leads to no printer.
PrinterTarget FindTarget(const PrinterInformation& queue);

// CreatePrinterAt makes the access to a printer; null for the kind None. The gate is asked before each exchange with
// it.
std::unique_ptr<KVFPrinter> CreatePrinterAt(const PrinterTarget& target, const ExchangeGate& gate = {});

// CreatePrinterForQueue makes the access to the printer behind a print queue. Null when the queue cannot be read or its
// port leads to no printer.
std::unique_ptr<KVFPrinter> CreatePrinterForQueue(const std::wstring& queueName, const ExchangeGate& gate = {});

}  // namespace zt
