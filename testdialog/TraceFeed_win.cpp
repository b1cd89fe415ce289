#include "TraceFeed_win.h"

#include <windows.h>

#include <memory>
#include <string>
#include <utility>

#include "CodePage.h"
#include "Logger.h"

namespace zt {

void FeedTrace(HWND window, UINT message) {
  processLogger.Listen([window, message](Severity severity, const std::string& line) {
    auto copy = std::make_unique<TraceLine>(TraceLine{severity, ToWide(line)});
    if (PostMessageW(window, message, 0, reinterpret_cast<LPARAM>(copy.get()))) static_cast<void>(copy.release());
  });
}

TraceLine TakeTraceLine(LPARAM parameter) {
  const std::unique_ptr<TraceLine> line(reinterpret_cast<TraceLine*>(parameter));
  return std::move(*line);
}

void EndTrace(HWND window, UINT message) {
  processLogger.Listen(nullptr);
  MSG left = {};
  while (PeekMessageW(&left, window, message, message, PM_REMOVE)) TakeTraceLine(left.lParam);
}

}  // namespace zt
