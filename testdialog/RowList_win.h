#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Handle.h"
#include "Row.h"

namespace zt {

// A column of a list, with its width in dialog units. The last one takes what room there is.
struct RowColumn {
  const wchar_t* title;
  int width;
};

// RowList is a list of lines and, below it, a field that shows all of the line that is chosen: a cell shows at most 259
// characters, a server's answer may have thousands.
class RowList {
 public:
  // Attach takes over the two controls of a dialog; `details` 0 without such a field.
  void Attach(HWND dialog, int list, int details, std::span<const RowColumn> columns);

  // Fill shows these rows and no others.
  void Fill(const std::vector<Row>& rows);

  // Clear, Add for each line with one text a column, and Shown at the end do the same line by line.
  void Clear();
  void Add(std::initializer_list<std::wstring_view> cells);
  void Shown();

  // Choose chooses a line and no other, and scrolls to it; none when there is no such line.
  void Choose(int line) const;

  // Chosen returns the first line that is chosen; -1 without one.
  int Chosen() const;

  // ShowDetails shows the chosen line in the field; on LVN_ITEMCHANGED of the list.
  void ShowDetails() const;

  // FitColumns gives the last column the room that is left.
  void FitColumns() const;

 private:
  HWND list_ = nullptr;
  HWND details_ = nullptr;
  int columns_ = 0;
  std::vector<std::wstring> lines_;  // as the field shows them
};

// The usual columns of a page of rows.
inline constexpr RowColumn kRowColumns[] = {{L"What", 112}, {L"Value", 86}, {L"Meaning", 106}};

// IsList answers whether a control is a list.
bool IsList(HWND control);

// HandleListKey does what a key that is pressed together with Ctrl means in a list: C copies the chosen lines, cells
// separated by tabs, and A chooses all. False for any other control or key.
bool HandleListKey(HWND control, WPARAM key);

// ScaleColumns changes the width of all columns of a list control by `now` to `before`.
void ScaleColumns(HWND list, int now, int before);

}  // namespace zt
