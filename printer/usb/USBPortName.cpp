#include "USBPortName.h"

#include <limits>

#include "Hex.h"

namespace zt {

std::optional<std::uint32_t> USBPortNumber(std::wstring_view portName) {
  if (portName.size() < 2 || !IsDecimalDigit(portName.back())) return std::nullopt;
  std::size_t begin = portName.size() - 1;
  while (begin > 1 && IsDecimalDigit(portName[begin - 1])) --begin;

  std::uint64_t number = 0;
  for (const wchar_t digit : portName.substr(begin)) {
    number = number * 10 + static_cast<std::uint64_t>(digit - L'0');
    if (number > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  }
  return static_cast<std::uint32_t>(number);
}

}  // namespace zt
