#pragma once

#include <string>

namespace zt {

// Row is one line of a page of the test dialog: what it is about, what was read, and what that means, or why it could
// not be read. The pages are filled without windows; whatever they show is wide text, ready to be shown.
struct Row {
  std::wstring label;
  std::wstring value;
  std::wstring remark;
  bool operator==(const Row&) const = default;
};

}  // namespace zt
