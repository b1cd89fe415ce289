#include "Clipboard_win.h"

#include <windows.h>

#include <cstring>

namespace zt {

bool CopyToClipboard(HWND owner, std::wstring_view text) {
  // Zeroed, so that the terminator is there.
  const HGLOBAL memory = GlobalAlloc(GHND, (text.size() + 1) * sizeof(wchar_t));
  void* const copy = memory ? GlobalLock(memory) : nullptr;
  bool copied = false;
  if (copy) {
    std::memcpy(copy, text.data(), text.size() * sizeof(wchar_t));
    GlobalUnlock(memory);
    if (OpenClipboard(owner)) {
      EmptyClipboard();
      copied = SetClipboardData(CF_UNICODETEXT, memory) != nullptr;
      CloseClipboard();
    }
  }
  // What the clipboard took is its own.
  if (!copied) GlobalFree(memory);
  return copied;
}

}  // namespace zt
