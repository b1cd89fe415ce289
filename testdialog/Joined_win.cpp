#include "Joined_win.h"

namespace zt {

std::wstring Joined(std::initializer_list<std::wstring_view> texts) {
  std::wstring joined;
  for (const std::wstring_view text : texts) joined += text;
  return joined;
}

}  // namespace zt
