#pragma once

#include <memory>
#include <string>

#include "USBBulkIO.h"
#include "USBControl.h"

namespace zt {

// OpenUSBControl opens the printer at a device path for requests only, beside others that have it open. Null on
// failure.
std::unique_ptr<USBControl> OpenUSBControl(const std::wstring& devicePath);

// OpenUSBBulkIO opens the bulk pipes of the printer at a device path; null on failure, also when somebody else has it
// open. A read or write takes at most 5 seconds, and 2 more when it has to be cancelled.
std::unique_ptr<USBBulkIO> OpenUSBBulkIO(const std::wstring& devicePath);

}  // namespace zt
