#pragma once

#include <span>
#include <vector>

#include "Handle.h"

namespace zt {

// DialogUnits is the size of a dialog's units: pixels of four of them across, and of eight of them down.
struct DialogUnits {
  int across;
  int down;

  // Of the font that the dialog has now, by the rule by which Windows sizes dialogs.
  static DialogUnits Of(HWND dialog);

  RECT ToPixels(const RECT& units) const;
};

// Anchor says how a control moves when its window has room to spare: in percent of that room, edge by edge.
struct Anchor {
  int control;
  int left;
  int top;
  int right;
  int bottom;
};

// Layout keeps the places of a dialog's controls in dialog units, so that they come out right for every size of the
// window and every density of its display.
class Layout {
 public:
  // Learn notes the places that the template gives; before anything else moves or adds controls. Controls without an
  // anchor keep their place.
  void Learn(HWND dialog, std::span<const Anchor> anchors);

  // Arrange places the controls for the dialog's present size and font.
  void Arrange(HWND dialog) const;

  // Smallest returns the client area in pixels for which the template was made.
  SIZE Smallest(HWND dialog) const;

 private:
  struct Place {
    HWND control;
    RECT units;
    Anchor anchor;
  };
  SIZE size_ = {};  // of the template, in dialog units
  std::vector<Place> places_;
};

}  // namespace zt
