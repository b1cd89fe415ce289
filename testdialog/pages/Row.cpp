#include "Row.h"

namespace zt {

Row& AddRow(std::vector<Row>& rows, Ascii label, Piece value, Ascii remark) {
  Row& row = rows.emplace_back();
  Piece(label).AppendTo(row.label);
  value.AppendTo(row.value);
  Piece(remark).AppendTo(row.remark);
  return row;
}

}  // namespace zt
