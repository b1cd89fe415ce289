#pragma once

#include <vector>

#include "ExchangeGate.h"
#include "PrinterChoice.h"

namespace zt {

// ListLocalPrinters returns the queues of this computer and where each leads, the USB printers to which no queue leads,
// and the virtual printer. It may take seconds; a closed gate ends it early.
std::vector<PrinterChoice> ListLocalPrinters(const ExchangeGate& gate);

}  // namespace zt
