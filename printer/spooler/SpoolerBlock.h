#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

#include "Handle.h"

namespace zt {

struct GlobalMemoryTraits {
  using Type = HGLOBAL;
  static Type Invalid() { return nullptr; }
  static void Close(Type memory) { GlobalFree(memory); }
};
using GlobalMemory = Handle<GlobalMemoryTraits>;  // of GlobalAlloc

struct PrinterHandleTraits {
  using Type = HANDLE;
  static Type Invalid() { return nullptr; }
  static void Close(Type printer);
};
using PrinterHandle = Handle<PrinterHandleTraits>;  // of OpenPrinterW

// SpoolerBlock is the reply to a spooler call of the two-step kind (ask for the size, then fill): structures, and
// behind them the texts that they point to, in one zero-initialised global memory block.
class SpoolerBlock {
 public:
  // A spooler call with all its arguments but the buffer and the size that it needs.
  using Call = std::function<BOOL(BYTE* buffer, DWORD size, DWORD* needed)>;

  // Read makes the call twice. Nothing when either call fails, or the reply would be larger than 64 MiB.
  static std::optional<SpoolerBlock> Read(const Call& call);

  // Items returns the first `count` structures of the block; none when it has not that many.
  template <class Info>
  std::span<const Info> Items(std::size_t count) const {
    if (count > size_ / sizeof(Info)) return {};
    return {static_cast<const Info*>(memory_.Get()), count};
  }

  // Text returns the text that a structure points to; empty for null and for one that does not lie in the block with
  // its terminator.
  std::wstring_view Text(const wchar_t* text) const;

 private:
  GlobalMemory memory_;
  std::size_t size_ = 0;
};

}  // namespace zt
