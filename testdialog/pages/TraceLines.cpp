#include "TraceLines.h"

#include <algorithm>
#include <iterator>

namespace zt {

void TraceLines::Add(TraceLine line) {
  // Many at once, so that not each line moves all others.
  if (lines_.size() == kMost) lines_.erase(lines_.begin(), lines_.begin() + kMost / 10);
  lines_.push_back(std::move(line));
}

std::wstring TraceLines::Text(Severity least, std::size_t most) const {
  std::vector<const TraceLine*> chosen;
  for (auto line = lines_.rbegin(); line != lines_.rend() && chosen.size() < most; ++line) {
    if (line->severity <= least) chosen.push_back(&*line);  // the graver, the lower the number
  }
  std::reverse(chosen.begin(), chosen.end());
  std::wstring text;
  for (const TraceLine* const line : chosen) text.append(line->text).append(L"\r\n");
  return text;
}

}  // namespace zt
