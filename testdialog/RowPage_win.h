#pragma once

#include <vector>

#include "Page_win.h"
#include "RowList_win.h"

namespace zt {

// RowPage is a page that shows rows.
class RowPage : public Page {
 public:
  // `rows` and `details` are the controls of its list, as RowList::Attach takes them.
  RowPage(PageHost& host, int dialog, const wchar_t* title, std::span<const Anchor> anchors, int rows, int details)
      : Page(host, dialog, title, anchors), rowsControl_(rows), detailsControl_(details) {}

  DiagnosisSection Describe() const override;

 protected:
  void Init() override;
  void Notify(const NMHDR& header) override;
  void AfterArranging() override;

  void ShowRows(std::vector<Row>&& rows);
  const std::vector<Row>& Rows() const { return shown_; }

  RowList list_;

 private:
  int rowsControl_;
  int detailsControl_;
  std::vector<Row> shown_;
};

// OneRow returns the rows of a page where there is but one thing to say.
std::vector<Row> OneRow(Ascii what, Ascii value, Piece meaning);

// What a page says before anything was read, and when the printer does not open, of which Identity says more.
std::vector<Row> NothingRead();
std::vector<Row> NoAnswer();

}  // namespace zt
