#include "TraceLines.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace zt {

void TraceLines::Add(TraceLine line) {
  lines_.push_back(std::move(line));
  if (lines_.size() > kMost) lines_.pop_front();
}

std::wstring TraceLines::Text(Severity least, std::size_t most) const {
  std::vector<const TraceLine*> chosen;
  for (auto line = lines_.rbegin(); line != lines_.rend() && chosen.size() < most; ++line) {
    if (line->severity <= least) chosen.push_back(&*line);  // the graver, the lower the number
  }
  std::wstring text;
  for (auto line = chosen.rbegin(); line != chosen.rend(); ++line) text += (*line)->text + L"\r\n";
  return text;
}

}  // namespace zt
