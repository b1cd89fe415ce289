#pragma once

#include <string>
#include <vector>

namespace zt {

// EnumerateLocalPrinters returns the names of this computer's queues and of its connections to other computers' ones;
// none when the spooler fails. No caller in this program; part of the interface, for tools that choose a queue.
std::vector<std::wstring> EnumerateLocalPrinters();

}  // namespace zt
