#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace zt {

// USBPortNumber returns the number at the end of a USB port's name: 1 for "USB001". The first character never belongs
// to it. Nothing for a name that does not end in a digit, is shorter than 2 characters, or whose number exceeds 32
// bits.
std::optional<std::uint32_t> USBPortNumber(std::wstring_view portName);

}  // namespace zt
