#include "WindowDensity_win.h"

#include <windows.h>

#include <utility>

#include "RowList_win.h"
#include "SystemLibrary_win.h"

namespace zt {
namespace {

struct Change {
  HFONT font;
  int now;
  int before;
};

BOOL CALLBACK Apply(HWND control, LPARAM parameter) {
  const auto& change = *reinterpret_cast<const Change*>(parameter);
  SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(change.font), FALSE);
  if (IsList(control)) ScaleColumns(control, change.now, change.before);
  return TRUE;
}

}  // namespace

int DensityOf(HWND window) {
  using GetDpiForWindowFunction = UINT WINAPI(HWND);
  const auto getDpiForWindow =
      FindFunction<GetDpiForWindowFunction>(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow");
  if (getDpiForWindow) {
    if (const UINT density = getDpiForWindow(window)) return static_cast<int>(density);
  }
  const HDC context = GetDC(window);
  const int density = GetDeviceCaps(context, LOGPIXELSY);
  ReleaseDC(window, context);
  return density;
}

void LeaveScalingToProgram(HWND dialog) {
  using SetDialogDpiChangeBehaviorFunction = BOOL WINAPI(HWND, int mask, int values);
  constexpr int kDisableAll = 1;
  const auto setBehaviour =
      FindFunction<SetDialogDpiChangeBehaviorFunction>(GetModuleHandleW(L"user32.dll"), "SetDialogDpiChangeBehavior");
  if (setBehaviour) setBehaviour(dialog, kDisableAll, kDisableAll);
}

DialogFont::~DialogFont() {
  if (font_) DeleteObject(font_);
}

void DialogFont::Learn(HWND dialog) {
  firstDensity_ = density_ = DensityOf(dialog);
  GetObjectW(reinterpret_cast<HFONT>(SendMessageW(dialog, WM_GETFONT, 0, 0)), sizeof(first_), &first_);
}

void DialogFont::Fit(HWND dialog, int density) {
  if (density == density_ || density <= 0) return;
  LOGFONTW description = first_;
  description.lfHeight = MulDiv(first_.lfHeight, density, firstDensity_);
  description.lfWidth = 0;
  const HFONT font = CreateFontIndirectW(&description);
  if (!font) return;
  const HFONT old = std::exchange(font_, font);
  const Change change = {font, density, std::exchange(density_, density)};
  EnumChildWindows(dialog, &Apply, reinterpret_cast<LPARAM>(&change));
  if (old) DeleteObject(old);
}

}  // namespace zt
