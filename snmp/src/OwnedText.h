#pragma once

#include <cstddef>
#include <new>
#include <string>

namespace ztsnmp {

/// assignText replaces the content of a text; false, with the old content, when memory runs out. The source may lie in
/// the text itself.
[[nodiscard]] inline bool assignText(std::string& text, const char* source, std::size_t length) noexcept {
  try {
    text.assign(source, length);
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace ztsnmp
