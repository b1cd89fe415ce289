#include "PageTabs_win.h"

#include <windows.h>
#include <commctrl.h>

#include "resource.h"

namespace zt {

PageTabs::PageTabs(PageHost& host) : host_(host) {
  constexpr std::unique_ptr<Page> (*kMakers[kCount])(PageHost&) = {
      MakeIdentityPage,   MakeSuppliesPage, MakeReportPage, MakeServerPage,
      MakeProtectionPage, MakeHistoryPage,  MakeTracePage};
  for (std::size_t number = 0; number < kCount; ++number) pages_[number] = kMakers[number](host);
}

void PageTabs::Attach(HWND dialog) {
  dialog_ = dialog;
  tabs_ = GetDlgItem(dialog, IDC_PAGES);
  HWND behind = GetDlgItem(dialog, IDC_READ_AGAIN);
  for (std::size_t number = 0; number < kCount; ++number) {
    Page& page = *pages_[number];
    TCITEMW tab = {};
    tab.mask = TCIF_TEXT;
    tab.pszText = const_cast<wchar_t*>(page.Title());
    SendMessageW(tabs_, TCM_INSERTITEMW, number, reinterpret_cast<LPARAM>(&tab));
    if (!page.Create(dialog)) continue;
    // Before the tabs in the order of the Tab key, as on a property sheet: what comes first lies on top.
    SetWindowPos(page.Window(), behind, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    behind = page.Window();
  }
  Show(0);
}

void PageTabs::Arrange() const {
  RECT area = {};
  GetWindowRect(tabs_, &area);
  MapWindowPoints(nullptr, dialog_, reinterpret_cast<POINT*>(&area), 2);
  SendMessageW(tabs_, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
  for (const std::unique_ptr<Page>& page : pages_) {
    SetWindowPos(page->Window(), nullptr, area.left, area.top, area.right - area.left, area.bottom - area.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    // A page that keeps its size may have got another font.
    page->Arrange();
  }
}

void PageTabs::ShowChosen() { Show(static_cast<std::size_t>(SendMessageW(tabs_, TCM_GETCURSEL, 0, 0))); }

void PageTabs::Turn(int direction) {
  // The focus must not stay on a page that nobody sees.
  if (IsChild(Seen().Window(), GetFocus())) SetFocus(tabs_);
  Show((seen_ + kCount + static_cast<std::size_t>(direction)) % kCount);
}

void PageTabs::Show(std::size_t number) {
  if (number >= kCount) return;
  seen_ = number;
  SendMessageW(tabs_, TCM_SETCURSEL, number, 0);
  for (const std::unique_ptr<Page>& page : pages_) {
    if (page.get() != &Seen()) ShowWindow(page->Window(), SW_HIDE);
  }
  ShowWindow(Seen().Window(), SW_SHOWNA);
  Seen().TraceGrew();
}

void PageTabs::Forget() {
  for (const std::unique_ptr<Page>& page : pages_) {
    page->wasRead = false;
    page->Forget();
  }
}

Page* PageTabs::NextToRead() {
  if (!host_.Chosen()) return nullptr;
  Page& page = pages_[0]->wasRead ? Seen() : *pages_[0];
  if (page.wasRead) return nullptr;
  page.wasRead = true;
  return &page;
}

void PageTabs::Describe(std::vector<DiagnosisSection>& sections) const {
  for (const std::unique_ptr<Page>& page : pages_) sections.push_back(page->Describe());
}

}  // namespace zt
