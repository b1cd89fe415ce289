#include "RowList_win.h"

#include <windows.h>
#include <commctrl.h>

#include <utility>

#include "Clipboard_win.h"
#include "Layout_win.h"
#include "Words.h"

namespace zt {
namespace {

int ColumnCount(HWND list) { return Header_GetItemCount(ListView_GetHeader(list)); }

std::wstring CellText(HWND list, int line, int column) {
  std::wstring text(256, L'\0');
  for (;;) {
    LVITEMW item = {};
    item.iSubItem = column;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    const auto length = static_cast<std::size_t>(
        SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(&item)));
    if (length + 1 < text.size()) {
      text.resize(length);
      return text;
    }
    text.resize(text.size() * 2);
  }
}

// A cell is one line.
std::wstring ForCell(std::wstring_view text) {
  std::wstring cell(text);
  for (wchar_t& c : cell) {
    if (c == L'\r' || c == L'\n' || c == L'\t') c = L' ';
  }
  return cell;
}

void CopyChosenLines(HWND list) {
  std::wstring text;
  for (int line = -1; (line = ListView_GetNextItem(list, line, LVNI_SELECTED)) >= 0;) {
    for (int column = 0; column < ColumnCount(list); ++column) {
      if (column > 0) text += L'\t';
      text += CellText(list, line, column);
    }
    text += L"\r\n";
  }
  if (!text.empty()) CopyToClipboard(GetParent(list), text);
}

}  // namespace

void RowList::Attach(HWND dialog, int list, int details, std::span<const RowColumn> columns) {
  list_ = GetDlgItem(dialog, list);
  details_ = details ? GetDlgItem(dialog, details) : nullptr;
  ListView_SetExtendedListViewStyle(list_, LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP | LVS_EX_DOUBLEBUFFER);
  const DialogUnits units = DialogUnits::Of(dialog);
  for (const RowColumn& column : columns) {
    LVCOLUMNW made = {};
    made.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
    made.pszText = const_cast<wchar_t*>(column.title);
    made.cx = MulDiv(column.width, units.across, 4);
    made.iSubItem = columns_;
    SendMessageW(list_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(columns_), reinterpret_cast<LPARAM>(&made));
    ++columns_;
  }
}

void RowList::Fill(const std::vector<Row>& rows) {
  Clear();
  for (const Row& row : rows) Add({row.label, row.value, row.remark});
  Shown();
}

void RowList::Clear() {
  SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
  ListView_DeleteAllItems(list_);
  lines_.clear();
}

void RowList::Add(std::initializer_list<std::wstring_view> cells) {
  std::wstring line;
  int column = 0;
  for (const std::wstring_view cell : cells) {
    if (!cell.empty()) {
      if (!line.empty()) line += L"\r\n";
      line += WithLineEnds(cell);
    }
    std::wstring text = ForCell(cell);
    LVITEMW item = {};
    item.mask = LVIF_TEXT;
    item.iItem = static_cast<int>(lines_.size());
    item.iSubItem = column;
    item.pszText = text.data();
    SendMessageW(list_, column == 0 ? LVM_INSERTITEMW : LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    ++column;
  }
  lines_.push_back(std::move(line));
}

void RowList::Shown() {
  SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
  FitColumns();
  // So that the field has something to say; what no field shows is left to the user to choose.
  if (details_ && !lines_.empty()) Choose(0);
  ShowDetails();
}

void RowList::Choose(int line) const {
  if (line < 0) return;  // for the control, that would be all of them
  ListView_SetItemState(list_, -1, 0, LVIS_SELECTED);
  ListView_SetItemState(list_, line, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  ListView_EnsureVisible(list_, line, FALSE);
}

int RowList::Chosen() const { return ListView_GetNextItem(list_, -1, LVNI_SELECTED); }

void RowList::ShowDetails() const {
  if (!details_) return;
  const auto chosen = static_cast<std::size_t>(Chosen());
  SetWindowTextW(details_, chosen < lines_.size() ? lines_[chosen].c_str() : L"Choose a line above to see all of it.");
}

void RowList::FitColumns() const {
  // Without the last one's own width, that of the others, and room for a scroll bar whether there is one or not.
  RECT client = {};
  GetWindowRect(list_, &client);
  int room = client.right - client.left - GetSystemMetrics(SM_CXVSCROLL) - 2 * GetSystemMetrics(SM_CXEDGE);
  for (int column = 0; column + 1 < columns_; ++column) room -= ListView_GetColumnWidth(list_, column);
  if (room > 0) ListView_SetColumnWidth(list_, columns_ - 1, room);
}

bool IsList(HWND control) {
  wchar_t name[32] = L"";
  GetClassNameW(control, name, static_cast<int>(std::size(name)));
  return lstrcmpiW(name, WC_LISTVIEWW) == 0;
}

bool HandleListKey(HWND control, WPARAM key) {
  if ((key != 'A' && key != 'C') || !IsList(control)) return false;
  if (key == 'C') {
    CopyChosenLines(control);
  } else if (!(GetWindowLongPtrW(control, GWL_STYLE) & LVS_SINGLESEL)) {
    ListView_SetItemState(control, -1, LVIS_SELECTED, LVIS_SELECTED);
  }
  return true;
}

void ScaleColumns(HWND list, int now, int before) {
  for (int column = 0; column < ColumnCount(list); ++column) {
    ListView_SetColumnWidth(list, column, MulDiv(ListView_GetColumnWidth(list, column), now, before));
  }
}

}  // namespace zt
