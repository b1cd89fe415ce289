#pragma once

#include <string>
#include <vector>

#include "Handle.h"
#include "PrinterChoice.h"
#include "RowList_win.h"

namespace zt {

// PrinterPane is the left side of the window: the list of printers, and the field for another one's address.
class PrinterPane {
 public:
  void Attach(HWND dialog);

  // SetLocal replaces the printers of this computer; those of the network that are in the list stay.
  void SetLocal(std::vector<PrinterChoice> printers);

  // AddNetwork adds printers of the network that are not in the list yet, and returns how many those are.
  std::size_t AddNetwork(const std::vector<PrinterChoice>& printers);

  // Chosen returns the chosen printer; null without one. It holds until the list changes.
  const PrinterChoice* Chosen() const;

  // Choose chooses a line of the list, or none that is there, and shows it.
  void Choose(const PrinterChoice& choice);
  void ChooseFirst();

  // Find returns the printer at that address of the network, or the queue of that name; null without one.
  const PrinterChoice* FindAddress(const std::wstring& address) const;
  const PrinterChoice* FindQueue(const std::wstring& name) const;

  // TypedAddress returns what stands in the field, without blanks around it.
  std::wstring TypedAddress() const;

  void FitColumns() const { list_.FitColumns(); }

 private:
  void Show();

  HWND dialog_ = nullptr;
  RowList list_;
  std::vector<PrinterChoice> printers_;
};

}  // namespace zt
