#pragma once

#include "Handle.h"
#include "TraceLines.h"

namespace zt {

// The trace comes from any thread; the window takes its lines as messages.

// FeedTrace posts each line of the trace to the window from now on, as that message.
void FeedTrace(HWND window, UINT message);

// TakeTraceLine returns the line of such a message; once, as the message owns it.
TraceLine TakeTraceLine(LPARAM parameter);

// EndTrace posts no more, and drops the lines that nobody has taken.
void EndTrace(HWND window, UINT message);

}  // namespace zt
