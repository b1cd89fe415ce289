#pragma once

#include <ctime>
#include <optional>

namespace zt {

// ToLocalTime returns the broken-down local time; nothing for a time that the C library cannot convert.
std::optional<std::tm> ToLocalTime(std::time_t time);

}  // namespace zt
