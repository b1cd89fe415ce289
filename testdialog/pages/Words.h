#pragma once

#include <string>
#include <string_view>

#include "HResult.h"
#include "Joined.h"
#include "ProtectionState.h"

// Words that several pages of the test dialog use.

namespace zt {

// Shown makes bytes of a printer, a server or a file fit to be shown in a row: one line, without control characters,
// cut where it is very long.
std::wstring Shown(std::string_view bytes);

// WithLineEnds returns the text with CR LF at each line end, as fields, the clipboard and files want it.
std::wstring WithLineEnds(std::wstring_view text);

// WhyNotRead words the result of a reading that failed: that this way to the printer has no such reading, or else
// `failed`, which says what the failure means for this datum.
Ascii WhyNotRead(HResult result, bool usb, Ascii failed);

// StateText words a protection state: "on", "off"; StateRemark says what follows from it.
Ascii StateText(ProtectionState state);
Ascii StateRemark(ProtectionState state);

}  // namespace zt
