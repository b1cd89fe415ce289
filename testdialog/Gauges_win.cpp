#include "Gauges_win.h"

#include <windows.h>

#include <algorithm>
#include <string>
#include <utility>

#include "Layout_win.h"

namespace zt {
namespace {

COLORREF InkOf(TonerColour colour) {
  switch (colour) {
    case TonerColour::Cyan:
      return RGB(0, 160, 210);
    case TonerColour::Magenta:
      return RGB(210, 0, 120);
    case TonerColour::Yellow:
      return RGB(245, 210, 0);
    case TonerColour::Black:
      return RGB(40, 40, 40);
  }
  return GetSysColor(COLOR_HIGHLIGHT);
}

bool IsHighContrast() {
  HIGHCONTRASTW contrast = {};
  contrast.cbSize = sizeof(contrast);
  return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof(contrast), &contrast, 0) &&
         (contrast.dwFlags & HCF_HIGHCONTRASTON);
}

}  // namespace

void Gauges::Attach(HWND dialog, int place) {
  dialog_ = dialog;
  place_ = GetDlgItem(dialog, place);
  first_ = place + 1;
  // Behind the place in the order of the controls, as a screen reader tells them.
  HWND behind = place_;
  for (int number = 0; number < static_cast<int>(kMost); ++number) {
    const HWND gauge = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | SS_OWNERDRAW, 0, 0, 0, 0, dialog,
                                       reinterpret_cast<HMENU>(static_cast<INT_PTR>(first_ + number)),
                                       GetModuleHandleW(nullptr), nullptr);
    SendMessageW(gauge, WM_SETFONT, static_cast<WPARAM>(SendMessageW(dialog, WM_GETFONT, 0, 0)), FALSE);
    SetWindowPos(gauge, behind, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    behind = gauge;
  }
}

void Gauges::Show(std::vector<Gauge> gauges) {
  gauges_ = std::move(gauges);
  if (gauges_.size() > kMost) gauges_.resize(kMost);
  for (std::size_t number = 0; number < kMost; ++number) {
    const HWND control = GetDlgItem(dialog_, first_ + static_cast<int>(number));
    const bool used = number < gauges_.size();
    std::wstring words;
    if (used) words = Joined({ColourName(gauges_[number].colour), ": ", gauges_[number].text});
    SetWindowTextW(control, words.c_str());
    ShowWindow(control, used ? SW_SHOWNA : SW_HIDE);
  }
  SetWindowTextW(place_, gauges_.empty() ? L"No toners to show." : L"");
  ShowWindow(place_, gauges_.empty() ? SW_SHOWNA : SW_HIDE);
  Arrange();
}

void Gauges::Arrange() const {
  constexpr int kLines = 4;
  RECT place = {};
  GetWindowRect(place_, &place);
  MapWindowPoints(nullptr, dialog_, reinterpret_cast<POINT*>(&place), 2);
  const int columns = gauges_.size() > kLines ? 2 : 1;
  const int width = (place.right - place.left) / columns;
  const int height = (place.bottom - place.top) / kLines;
  for (int number = 0; number < static_cast<int>(gauges_.size()); ++number) {
    const HWND control = GetDlgItem(dialog_, first_ + number);
    SetWindowPos(control, nullptr, place.left + number / kLines * width, place.top + number % kLines * height, width,
                 height, SWP_NOZORDER | SWP_NOACTIVATE);
    InvalidateRect(control, nullptr, FALSE);
  }
}

void Gauges::Draw(const DRAWITEMSTRUCT& item) const {
  const auto number = static_cast<std::size_t>(static_cast<int>(item.CtlID) - first_);
  if (number >= gauges_.size()) return;
  const Gauge& gauge = gauges_[number];
  const HDC context = item.hDC;
  const DialogUnits units = DialogUnits::Of(dialog_);
  const RECT parts = units.ToPixels({44, 1, 64, 2});  // the name's width, the bar's margin, the percentage's width

  // The background that the dialog gives its texts.
  const LRESULT background = SendMessageW(dialog_, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(context),
                                          reinterpret_cast<LPARAM>(item.hwndItem));
  FillRect(context, &item.rcItem, background ? reinterpret_cast<HBRUSH>(background) : GetSysColorBrush(COLOR_3DFACE));
  SetBkMode(context, TRANSPARENT);
  SetTextColor(context, GetSysColor(COLOR_BTNTEXT));
  const HGDIOBJ oldFont =
      SelectObject(context, reinterpret_cast<HGDIOBJ>(SendMessageW(item.hwndItem, WM_GETFONT, 0, 0)));
  RECT name = item.rcItem;
  name.right = name.left + parts.left;
  DrawTextW(context, Joined({ColourName(gauge.colour)}).c_str(), -1, &name,
            DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
  RECT words = item.rcItem;
  words.left = words.right - parts.right;
  DrawTextW(context, gauge.text.c_str(), -1, &words, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
  SelectObject(context, oldFont);

  RECT bar = {name.right, item.rcItem.top + parts.top, words.left - parts.bottom * 2, item.rcItem.bottom - parts.top};
  FrameRect(context, &bar, GetSysColorBrush(COLOR_WINDOWTEXT));
  InflateRect(&bar, -1, -1);
  FillRect(context, &bar, GetSysColorBrush(COLOR_WINDOW));
  if (!gauge.percent) return;
  bar.right = bar.left + MulDiv(bar.right - bar.left, std::clamp(*gauge.percent, 0, 100), 100);
  // Whoever needs high contrast has chosen the only colours that shall be seen.
  if (IsHighContrast()) {
    FillRect(context, &bar, GetSysColorBrush(COLOR_HIGHLIGHT));
  } else if (const HBRUSH ink = CreateSolidBrush(InkOf(gauge.colour))) {
    FillRect(context, &bar, ink);
    DeleteObject(ink);
  }
}

}  // namespace zt
