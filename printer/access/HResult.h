#pragma once

#include <cstdint>

namespace zt {

// HResult is the result code of printer access, with the values of the Windows codes of the same meaning.
enum class HResult : std::uint32_t {
  Ok = 0,                       // S_OK
  False = 1,                    // S_FALSE: it worked, and the answer is no
  NotImplemented = 0x80004001,  // E_NOTIMPL: this kind of printer access has no such operation
  Fail = 0x80004005,            // E_FAIL
};

// Succeeded reports whether the code is no failure code: the top bit marks those.
constexpr bool Succeeded(HResult result) { return (static_cast<std::uint32_t>(result) & 0x80000000u) == 0; }

}  // namespace zt
