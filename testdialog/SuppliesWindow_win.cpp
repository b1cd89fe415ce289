#include <windows.h>
#include <commctrl.h>

#include <utility>
#include <vector>

#include "ChosenPrinter_win.h"
#include "Gauges_win.h"
#include "Page_win.h"
#include "RowList_win.h"
#include "SuppliesPage.h"
#include "resource.h"

namespace zt {
namespace {

constexpr Anchor kAnchors[] = {{IDC_GAUGES, 0, 0, 100, 0},
                               {IDC_SUPPLY_ROWS, 0, 0, 100, 80},
                               {IDC_DETAILS_LABEL, 0, 80, 100, 80},
                               {IDC_SUPPLY_DETAILS, 0, 80, 100, 100}};

Supplies ReadChosen(const PrinterChoice& choice, const ExchangeGate& gate) {
  if (choice.kind == ChoiceKind::Virtual) return ReadSupplies(*MakeProvider(choice, gate));
  const std::unique_ptr<KVFPrinter> printer = ConnectPrinter(choice, gate);
  if (!printer) return {{}, OneRow(L"Printer", L"not found", choice.why)};
  if (!Succeeded(printer->Open())) return {{}, NoAnswer()};
  return ReadSupplies(*printer);
}

class SuppliesWindow : public Page {
 public:
  explicit SuppliesWindow(PageHost& host) : Page(host, IDD_SUPPLIES, L"Supplies") {}

  void Forget() override { Show({{}, NothingRead()}); }

  void Read() override {
    host_.Work(L"Reading toners and counters...", Effort::Read,
               [this, choice = host_.Chosen()](const ExchangeGate& gate) -> Worker::Finish {
                 return [this, supplies = ReadChosen(*choice, gate)]() mutable { Show(std::move(supplies)); };
               });
  }

  DiagnosisSection Describe() const override { return {Title(), shown_, {}}; }

 private:
  std::span<const Anchor> Anchors() const override { return kAnchors; }
  void Init() override {
    rows_.Attach(Window(), IDC_SUPPLY_ROWS, IDC_SUPPLY_DETAILS, kRowColumns);
    gauges_.Attach(Window(), IDC_GAUGES);
    Forget();
  }
  void Notify(const NMHDR& header) override {
    if (header.code == LVN_ITEMCHANGED) rows_.ShowDetails();
  }
  void Draw(const DRAWITEMSTRUCT& item) override { gauges_.Draw(item); }
  void AfterArranging() override {
    gauges_.Arrange();
    rows_.FitColumns();
  }

  void Show(Supplies&& supplies) {
    gauges_.Show(std::move(supplies.gauges));
    rows_.Fill(supplies.rows);
    shown_ = std::move(supplies.rows);
  }

  RowList rows_;
  Gauges gauges_;
  std::vector<Row> shown_;
};

}  // namespace

std::unique_ptr<Page> MakeSuppliesPage(PageHost& host) { return std::make_unique<SuppliesWindow>(host); }

}  // namespace zt
