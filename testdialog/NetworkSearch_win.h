#pragma once

#include <optional>
#include <string>
#include <vector>

#include "PrinterChoice.h"

namespace zt {

// NetworkPrinter makes the choice of a printer at an address of the network.
PrinterChoice NetworkPrinter(std::wstring name, std::wstring address);

// SearchNetwork asks all hosts of the local networks by SNMP, community "public", and returns the printers that answer.
// Nothing when the request could not be sent at all. It takes a few seconds; one search at a time.
std::optional<std::vector<PrinterChoice>> SearchNetwork();

}  // namespace zt
