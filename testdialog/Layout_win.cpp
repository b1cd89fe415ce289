#include "Layout_win.h"

#include <windows.h>

namespace zt {
namespace {

// A device context of a window.
class WindowContext {
 public:
  explicit WindowContext(HWND window) : window_(window), context_(GetDC(window)) {}
  ~WindowContext() { ReleaseDC(window_, context_); }
  WindowContext(const WindowContext&) = delete;
  WindowContext& operator=(const WindowContext&) = delete;
  HDC Get() const { return context_; }

 private:
  HWND window_;
  HDC context_;
};

RECT PlaceIn(HWND dialog, HWND control) {
  RECT place = {};
  GetWindowRect(control, &place);
  // The closed box is what stands in the dialog, but its height is set as that of the open one.
  RECT dropped = {};
  wchar_t name[16] = L"";
  GetClassNameW(control, name, static_cast<int>(std::size(name)));
  if (lstrcmpiW(name, L"ComboBox") == 0 &&
      SendMessageW(control, CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&dropped))) {
    place.bottom = dropped.bottom;
  }
  MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
  return place;
}

}  // namespace

DialogUnits DialogUnits::Of(HWND dialog) {
  constexpr wchar_t kLetters[] = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  constexpr int kCount = 52;
  // A dialog answers always with the font that it was made with, its controls with the one that they have.
  const LRESULT font = SendMessageW(GetWindow(dialog, GW_CHILD), WM_GETFONT, 0, 0);
  const WindowContext context(dialog);
  const HGDIOBJ old = SelectObject(context.Get(), reinterpret_cast<HGDIOBJ>(font));
  TEXTMETRICW metrics = {};
  SIZE size = {};
  const bool measured =
      GetTextMetricsW(context.Get(), &metrics) && GetTextExtentPoint32W(context.Get(), kLetters, kCount, &size);
  SelectObject(context.Get(), old);
  if (!measured) return {LOWORD(GetDialogBaseUnits()), HIWORD(GetDialogBaseUnits())};
  return {(size.cx / (kCount / 2) + 1) / 2, metrics.tmHeight};
}

RECT DialogUnits::ToPixels(const RECT& units) const {
  return {MulDiv(units.left, across, 4), MulDiv(units.top, down, 8), MulDiv(units.right, across, 4),
          MulDiv(units.bottom, down, 8)};
}

void Layout::Learn(HWND dialog, std::span<const Anchor> anchors) {
  // The units by which Windows has just made the dialog; dividing by them gives back the template's numbers.
  RECT base = {0, 0, 4, 8};
  MapDialogRect(dialog, &base);
  const auto toUnits = [&base](const RECT& pixels) -> RECT {
    return {MulDiv(pixels.left, 4, base.right), MulDiv(pixels.top, 8, base.bottom), MulDiv(pixels.right, 4, base.right),
            MulDiv(pixels.bottom, 8, base.bottom)};
  };
  RECT client = {};
  GetClientRect(dialog, &client);
  client = toUnits(client);
  size_ = {client.right, client.bottom};
  for (HWND control = GetWindow(dialog, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
    Place place{control, toUnits(PlaceIn(dialog, control)), {}};
    for (const Anchor& anchor : anchors) {
      if (anchor.control == GetDlgCtrlID(control)) place.anchor = anchor;
    }
    places_.push_back(place);
  }
}

void Layout::Arrange(HWND dialog) const {
  RECT client = {};
  GetClientRect(dialog, &client);
  const SIZE smallest = Smallest(dialog);
  const int wider = client.right - smallest.cx;
  const int higher = client.bottom - smallest.cy;
  const DialogUnits units = DialogUnits::Of(dialog);
  for (const Place& place : places_) {
    const RECT old = units.ToPixels(place.units);
    const RECT rect = {
        old.left + MulDiv(wider, place.anchor.left, 100), old.top + MulDiv(higher, place.anchor.top, 100),
        old.right + MulDiv(wider, place.anchor.right, 100), old.bottom + MulDiv(higher, place.anchor.bottom, 100)};
    SetWindowPos(place.control, nullptr, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top,
                 SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
  }
  RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

SIZE Layout::Smallest(HWND dialog) const {
  const RECT pixels = DialogUnits::Of(dialog).ToPixels({0, 0, size_.cx, size_.cy});
  return {pixels.right, pixels.bottom};
}

}  // namespace zt
