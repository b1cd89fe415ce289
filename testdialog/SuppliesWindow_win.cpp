#include <utility>

#include "ChosenPrinter_win.h"
#include "Gauges_win.h"
#include "RowPage_win.h"
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
  if (!printer) return {{}, OneRow("Printer", "not found", choice.why)};
  if (!Succeeded(printer->Open())) return {{}, NoAnswer()};
  return ReadSupplies(*printer);
}

class SuppliesWindow : public RowPage {
 public:
  explicit SuppliesWindow(PageHost& host)
      : RowPage(host, IDD_SUPPLIES, L"Supplies", kAnchors, IDC_SUPPLY_ROWS, IDC_SUPPLY_DETAILS) {}

  void Forget() override { Show({{}, NothingRead()}); }

  void Read() override {
    host_.Work("Reading toners and counters...", Effort::Read,
               MakeJob([choice = host_.Chosen()](const ExchangeGate& gate) { return ReadChosen(*choice, gate); },
                       [this](Supplies&& supplies) { Show(std::move(supplies)); }));
  }

 private:
  void Init() override {
    gauges_.Attach(Window(), IDC_GAUGES);
    RowPage::Init();
  }
  void Draw(const DRAWITEMSTRUCT& item) override { gauges_.Draw(item); }
  void AfterArranging() override {
    gauges_.Arrange();
    RowPage::AfterArranging();
  }

  void Show(Supplies&& supplies) {
    gauges_.Show(std::move(supplies.gauges));
    ShowRows(std::move(supplies.rows));
  }

  Gauges gauges_;
};

}  // namespace

std::unique_ptr<Page> MakeSuppliesPage(PageHost& host) { return std::make_unique<SuppliesWindow>(host); }

}  // namespace zt
