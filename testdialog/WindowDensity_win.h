#pragma once

#include "Handle.h"

namespace zt {

// DensityOf returns the dots per inch of the display that the window stands on; of the system where Windows knows but
// one.
int DensityOf(HWND window);

// LeaveScalingToProgram keeps Windows from giving a dialog's controls another size and font by itself when its density
// changes. Only the newer ones would.
void LeaveScalingToProgram(HWND dialog);

// DialogFont is the font of a dialog and all of its controls, in the size that fits the density of the display.
class DialogFont {
 public:
  DialogFont() = default;
  ~DialogFont();
  DialogFont(const DialogFont&) = delete;
  DialogFont& operator=(const DialogFont&) = delete;

  // Learn notes the font with which Windows has made the dialog.
  void Learn(HWND dialog);

  // Fit gives the dialog, and all in it, the font for that density. Columns of lists grow and shrink along.
  void Fit(HWND dialog, int density);

 private:
  LOGFONTW first_ = {};
  int firstDensity_ = 0;
  int density_ = 0;
  HFONT font_ = nullptr;
};

}  // namespace zt
