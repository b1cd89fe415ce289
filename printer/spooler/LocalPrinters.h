#pragma once

#include <string>
#include <vector>

namespace zt {

// EnumerateLocalPrinters returns the names of this computer's queues and of its connections to other computers' ones;
// none when the spooler fails.
std::vector<std::wstring> EnumerateLocalPrinters();

}  // namespace zt
