#pragma once

#include <cstdint>

namespace zt {

// ProtectionState is what a printer announces about the protection of its consumables, with the number of the
// interfaces that pass it on.
enum class ProtectionState : std::uint32_t {
  None = 0,
  On = 1,   // "SBXON"
  Off = 2,  // "SBXOFF"
  OT = 3,   // "SBXOT"
};

}  // namespace zt
