#pragma once

#include <memory>

#include "ExchangeGate.h"
#include "IZOLTDataProvider.h"
#include "KVFPrinter.h"
#include "PrinterChoice.h"

namespace zt {

// ConnectPrinter makes the access to a chosen printer; null for the virtual one and where a queue leads nowhere.
std::unique_ptr<KVFPrinter> ConnectPrinter(const PrinterChoice& choice, const ExchangeGate& gate);

// MakeProvider makes what a run would read the chosen printer by. A printer without a queue has no jobs and takes none.
// The gate must outlive the provider.
std::unique_ptr<IZOLTDataProvider> MakeProvider(const PrinterChoice& choice, const ExchangeGate& gate);

}  // namespace zt
