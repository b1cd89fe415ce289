#include "TraceCapture.h"

#include <algorithm>

#include "CodePage.h"

namespace zt {
namespace {

TraceCapture* current = nullptr;

std::string ModuleName(std::string_view path) {
  path.remove_prefix(std::min(path.find_last_of("/\\") + 1, path.size()));
  return std::string(path.substr(0, path.rfind('.')));
}

}  // namespace

TraceCapture::TraceCapture() {
  current = this;
  traceLevel = 4;
}

TraceCapture::~TraceCapture() {
  current = nullptr;
  traceLevel = 0;
}

std::vector<std::string> TraceCapture::Texts() const {
  std::vector<std::string> texts;
  for (const TracedLine& line : lines) {
    texts.push_back(std::to_string(static_cast<unsigned>(line.severity)) + " " + line.message);
  }
  return texts;
}

bool TraceCapture::Has(std::string_view levelAndText) const {
  const std::vector<std::string> texts = Texts();
  return std::find(texts.begin(), texts.end(), levelAndText) != texts.end();
}

void WriteTrace(Severity severity, std::string_view source, int, std::string_view message) {
  if (current) current->lines.push_back({severity, ModuleName(source), std::string(message)});
}

void WriteDebug(std::string_view text) {
  if (current) current->debug.emplace_back(text);
}

void WriteDebug(std::wstring_view text) { WriteDebug(ToNarrow(text)); }

}  // namespace zt
