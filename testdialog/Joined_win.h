#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace zt {

// Joined returns the texts one behind the other. A chain of + is several times as much code.
std::wstring Joined(std::initializer_list<std::wstring_view> texts);

}  // namespace zt
