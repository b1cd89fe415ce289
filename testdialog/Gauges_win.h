#pragma once

#include <vector>

#include "Handle.h"
#include "SuppliesPage.h"

namespace zt {

// Gauges are the toners of a printer, drawn: for each a control whose text says it in words, too.
class Gauges {
 public:
  static constexpr std::size_t kMost = 8;  // more than a printer has colours

  // Attach makes the gauges in the place of that control, numbered on from its number.
  void Attach(HWND dialog, int place);

  void Show(std::vector<Gauge> gauges);

  // Arrange places the gauges in the present place of the control.
  void Arrange() const;

  // Draw draws the gauge that Windows asks for.
  void Draw(const DRAWITEMSTRUCT& item) const;

 private:
  HWND dialog_ = nullptr;
  HWND place_ = nullptr;
  int first_ = 0;
  std::vector<Gauge> gauges_;
};

}  // namespace zt
