#pragma once

#include <string>
#include <vector>

#include "Joined.h"

namespace zt {

// Row is one line of a page of the test dialog: what it is about, what was read, and what that means, or why it could
// not be read. The pages are filled without windows; whatever they show is wide text, ready to be shown.
struct Row {
  std::wstring label;
  std::wstring value;
  std::wstring remark;
  bool operator==(const Row&) const = default;
};

// AddRow adds a line to a page and returns it. A remark that is no constant is set afterwards.
Row& AddRow(std::vector<Row>& rows, Ascii label, Piece value, Ascii remark = "");

}  // namespace zt
