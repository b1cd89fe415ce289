#pragma once

#include <string>

#include "ExchangeGate.h"
#include "IdentityPage.h"

namespace zt {

// ProbeNetwork looks up the address and tries to connect to the ports that printers listen on; a few seconds at most.
// A refused connection counts as an answer.
Reachability ProbeNetwork(const std::wstring& address, const ExchangeGate& gate);

}  // namespace zt
