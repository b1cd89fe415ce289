#include "SpoolerBlock.h"

#include <windows.h>
#include <winspool.h>

#include <algorithm>
#include <cstdint>

namespace zt {

void PrinterHandleTraits::Close(Type printer) { ClosePrinter(printer); }

std::optional<SpoolerBlock> SpoolerBlock::Read(const Call& call) {
  constexpr DWORD kMaximumSize = 64 * 1024 * 1024;
  DWORD size = 0;
  SetLastError(ERROR_SUCCESS);
  if (!call(nullptr, 0, &size) && GetLastError() != ERROR_INSUFFICIENT_BUFFER) return std::nullopt;
  if (size > kMaximumSize) return std::nullopt;

  SpoolerBlock block;
  block.memory_ = GlobalMemory(GlobalAlloc(GMEM_FIXED | GMEM_ZEROINIT, size));
  if (!block.memory_) return std::nullopt;
  block.size_ = size;
  SetLastError(ERROR_SUCCESS);
  if (!call(static_cast<BYTE*>(block.memory_.Get()), size, &size)) return std::nullopt;
  return block;
}

std::wstring_view SpoolerBlock::Text(const wchar_t* text) const {
  const auto begin = reinterpret_cast<std::uintptr_t>(memory_.Get());
  const auto at = reinterpret_cast<std::uintptr_t>(text);
  if (at < begin || at >= begin + size_ || at % alignof(wchar_t) != 0) return {};
  const wchar_t* end = text + (begin + size_ - at) / sizeof(wchar_t);
  const wchar_t* terminator = std::find(text, end, L'\0');
  if (terminator == end) return {};
  return {text, terminator};
}

}  // namespace zt
