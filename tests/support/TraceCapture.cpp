#include "TraceCapture.h"

#include "CodePage.h"

namespace zt {

void WriteTrace(Severity severity, std::string_view, int, std::string_view message) {
  if (!TraceCapture::current) return;
  const std::string level = std::to_string(static_cast<unsigned>(severity));
  TraceCapture::current->lines.push_back((level + " ").append(message));
}

void WriteDebug(std::string_view text) {
  if (TraceCapture::current) TraceCapture::current->debug.emplace_back(text);
}

void WriteDebug(std::wstring_view text) { WriteDebug(ToNarrow(text)); }

}  // namespace zt
