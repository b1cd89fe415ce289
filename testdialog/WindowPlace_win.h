#pragma once

#include "Handle.h"

namespace zt {

// The size and place of the dialog's window are kept for each user, under HKEY_CURRENT_USER.

// RestorePlace gives the window the place that it had last time and answers whether there was one: that is, one that
// can still be seen. What is stored counts only as far as it fits a monitor.
bool RestorePlace(HWND window);

void StorePlace(HWND window);

}  // namespace zt
