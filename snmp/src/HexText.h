#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace ztsnmp {

/// BtoH answers the upper-case hexadecimal digit of a nibble (0 to 15).
[[nodiscard]] char BtoH(std::uint8_t nibble) noexcept;

/// HtoB answers the nibble of a hexadecimal digit of either case, -1 for any other character.
[[nodiscard]] int HtoB(char digit) noexcept;

/// HtoA answers two upper-case hexadecimal digits per byte.
[[nodiscard]] std::string HtoA(std::span<const std::uint8_t> bytes);

/// isHexText answers whether the text consists of exactly `digits` hexadecimal digits of either case.
[[nodiscard]] bool isHexText(std::string_view text, std::size_t digits) noexcept;

}  // namespace ztsnmp
