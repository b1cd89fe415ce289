#include "ElevationPolicy.h"

#include <array>
#include <cstdint>

#include "Hex.h"

namespace zt {

std::string ElevationPolicyIdentifier(std::string_view baseName) {
  std::array<std::uint8_t, 16> bytes = {0x90, 0x73, 0xF4, 0xDF, 0x47, 0x5C, 0x4D, 0xAD,
                                        0x93, 0xBB, 0x8C, 0x4F, 0x61, 0x32, 0x04, 0x70};
  // The last six bytes take up the name, so that each differently named agent has an entry of its own.
  constexpr std::size_t kFirstNamed = 10;
  for (std::size_t at = kFirstNamed; at < bytes.size() && at - kFirstNamed < baseName.size(); ++at) {
    bytes[at] ^= static_cast<std::uint8_t>(baseName[at - kFirstNamed]);
  }

  std::string identifier = "{";
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (at == 4 || at == 6 || at == 8 || at == 10) identifier += '-';
    AppendHex(identifier, bytes[at]);
  }
  return identifier + "}";
}

}  // namespace zt
