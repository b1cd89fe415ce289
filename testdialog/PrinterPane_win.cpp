#include "PrinterPane_win.h"

#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "Text.h"
#include "resource.h"

namespace zt {
namespace {

constexpr RowColumn kColumns[] = {{L"Name", 64}, {L"Leads to", 96}, {L"Port", 60}, {L"Driver", 90}};

template <class Predicate>
const PrinterChoice* FindIf(const std::vector<PrinterChoice>& printers, const Predicate& predicate) {
  const auto found = std::ranges::find_if(printers, predicate);
  return found == printers.end() ? nullptr : &*found;
}

}  // namespace

void PrinterPane::Attach(HWND dialog) {
  dialog_ = dialog;
  list_.Attach(dialog, IDC_PRINTERS, 0, kColumns);
  SendDlgItemMessageW(dialog, IDC_ADDRESS, EM_SETCUEBANNER, FALSE, reinterpret_cast<LPARAM>(L"name or IP address"));
  SendDlgItemMessageW(dialog, IDC_ADDRESS, EM_SETLIMITTEXT, 255, 0);
}

void PrinterPane::SetLocal(std::vector<PrinterChoice> printers) {
  for (PrinterChoice& old : printers_) {
    if (old.kind == ChoiceKind::Network) printers.push_back(std::move(old));
  }
  printers_ = std::move(printers);
  Show();
}

std::size_t PrinterPane::AddNetwork(const std::vector<PrinterChoice>& printers) {
  const std::size_t before = printers_.size();
  const int line = list_.Chosen();
  for (const PrinterChoice& printer : printers) {
    if (!FindAddress(printer.target.address)) printers_.push_back(printer);
  }
  if (printers_.size() != before) Show();
  list_.Choose(line);
  return printers_.size() - before;
}

const PrinterChoice* PrinterPane::Chosen() const {
  const auto chosen = static_cast<std::size_t>(list_.Chosen());
  return chosen < printers_.size() ? &printers_[chosen] : nullptr;
}

void PrinterPane::Choose(const PrinterChoice& choice) {
  const auto found = std::ranges::find(printers_, choice);
  if (found == printers_.end()) return;
  list_.Choose(static_cast<int>(found - printers_.begin()));
}

void PrinterPane::ChooseFirst() { list_.Choose(0); }

const PrinterChoice* PrinterPane::FindAddress(const std::wstring& address) const {
  return FindIf(printers_, [&address](const PrinterChoice& printer) {
    return printer.kind == ChoiceKind::Network && EqualsIgnoringCase(printer.target.address, address);
  });
}

const PrinterChoice* PrinterPane::FindQueue(const std::wstring& name) const {
  return FindIf(printers_, [&name](const PrinterChoice& printer) {
    return printer.kind == ChoiceKind::Queue && EqualsIgnoringCase(printer.name, name);
  });
}

std::wstring PrinterPane::TypedAddress() const {
  wchar_t typed[256] = L"";
  GetDlgItemTextW(dialog_, IDC_ADDRESS, typed, static_cast<int>(std::size(typed)));
  const std::wstring text = typed;
  const std::size_t begin = text.find_first_not_of(L" \t");
  return begin == text.npos ? std::wstring() : text.substr(begin, text.find_last_not_of(L" \t") + 1 - begin);
}

void PrinterPane::Show() {
  list_.Clear();
  for (const PrinterChoice& printer : printers_) {
    list_.Add({printer.name, DescribeTarget(printer), printer.port, printer.driver});
  }
  list_.Shown();
}

}  // namespace zt
