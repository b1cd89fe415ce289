#include "TraceCapture.h"

#include <algorithm>

#include "CodePage.h"

namespace zt {
namespace {

TraceCapture* current = nullptr;

}  // namespace

TraceCapture::TraceCapture() {
  current = this;
  traceLevel = 4;
}

TraceCapture::~TraceCapture() {
  current = nullptr;
  traceLevel = 0;
}

bool TraceCapture::Has(std::string_view levelAndText) const {
  return std::find(lines.begin(), lines.end(), levelAndText) != lines.end();
}

void WriteTrace(Severity severity, std::string_view, int, std::string_view message) {
  if (!current) return;
  current->lines.push_back(std::to_string(static_cast<unsigned>(severity)).append(" ").append(message));
}

void WriteDebug(std::string_view text) {
  if (current) current->debug.emplace_back(text);
}

void WriteDebug(std::wstring_view text) { WriteDebug(ToNarrow(text)); }

}  // namespace zt
