#include "RowPage_win.h"

#include <windows.h>
#include <commctrl.h>

#include <utility>

namespace zt {

DiagnosisSection RowPage::Describe() const { return {Title(), shown_, {}}; }

void RowPage::Init() {
  list_.Attach(Window(), rowsControl_, detailsControl_, kRowColumns);
  Forget();
}

void RowPage::Notify(const NMHDR& header) {
  if (header.code == LVN_ITEMCHANGED) list_.ShowDetails();
}

void RowPage::AfterArranging() { list_.FitColumns(); }

void RowPage::ShowRows(std::vector<Row>&& rows) {
  shown_ = std::move(rows);
  list_.Fill(shown_);
}

std::vector<Row> OneRow(Ascii what, Ascii value, Piece meaning) {
  std::vector<Row> rows;
  meaning.AppendTo(AddRow(rows, what, value).remark);
  return rows;
}

std::vector<Row> NothingRead() {
  return OneRow("Nothing read yet", "", "Choose a printer on the left, or press F5 to read again.");
}

std::vector<Row> NoAnswer() {
  return OneRow("Printer", "does not answer", "The page Identity says what is known about why.");
}

}  // namespace zt
