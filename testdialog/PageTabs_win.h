#pragma once

#include <array>
#include <memory>
#include <vector>

#include "Page_win.h"

namespace zt {

// PageTabs are the pages of the dialog on their tabs, one of which is seen.
class PageTabs {
 public:
  explicit PageTabs(PageHost& host);

  // Attach makes the tabs and the pages; the first one is seen.
  void Attach(HWND dialog);

  // Arrange fits the pages into the present place of the tabs.
  void Arrange() const;

  Page& Seen() const { return *pages_[seen_]; }

  // ShowChosen shows the page whose tab is chosen; Turn the next one, or that before with -1.
  void ShowChosen();
  void Turn(int direction);

  // Forget empties all pages, as another printer was chosen.
  void Forget();

  // NextToRead returns a page that is to be read, and takes it for read from now on; null when there is none. Beside
  // the one that is seen that is the first one, which finds out what others need to know.
  Page* NextToRead();

  // Describe adds what each page has to say to a diagnosis.
  void Describe(std::vector<DiagnosisSection>& sections) const;

 private:
  static constexpr std::size_t kCount = 7;

  void Show(std::size_t number);

  PageHost& host_;
  HWND dialog_ = nullptr;
  HWND tabs_ = nullptr;
  std::array<std::unique_ptr<Page>, kCount> pages_;
  std::size_t seen_ = 0;
};

}  // namespace zt
