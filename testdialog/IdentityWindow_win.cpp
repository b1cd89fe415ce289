#include <windows.h>
#include <commctrl.h>

#include <utility>
#include <vector>

#include "ChosenPrinter_win.h"
#include "IdentityPage.h"
#include "NetworkProbe_win.h"
#include "Page_win.h"
#include "RowList_win.h"
#include "resource.h"

namespace zt {
namespace {

constexpr Anchor kAnchors[] = {
    {IDC_IDENTITY_ROWS, 0, 0, 100, 80}, {IDC_DETAILS_LABEL, 0, 80, 100, 80}, {IDC_IDENTITY_DETAILS, 0, 80, 100, 100}};

struct Reading {
  Identity identity;
  std::string serialNumber;
  std::string modelName;
};

Reading ReadChosen(const PrinterChoice& choice, const ExchangeGate& gate) {
  Reading reading;
  if (choice.kind == ChoiceKind::Virtual) {
    const std::unique_ptr<IZOLTDataProvider> provider = MakeProvider(choice, gate);
    reading.identity = ReadIdentity(*provider);
    provider->GetSerialNumber(reading.serialNumber);
    provider->GetModelName(reading.modelName);
    return reading;
  }
  const std::unique_ptr<KVFPrinter> printer = ConnectPrinter(choice, gate);
  if (!printer) {
    reading.identity.rows = OneRow(L"Printer", L"not found", choice.why);
    return reading;
  }
  const Reach reach = [&gate](const std::wstring& address) { return ProbeNetwork(address, gate); };
  reading.identity = ReadIdentity(*printer, choice.target, reach);
  if (reading.identity.opened) {
    printer->GetSerialNumber(reading.serialNumber);
    printer->GetModelName(reading.modelName);
  }
  return reading;
}

class IdentityWindow : public Page {
 public:
  explicit IdentityWindow(PageHost& host) : Page(host, IDD_IDENTITY, L"Identity") {}

  void Forget() override { Show(NothingRead()); }

  void Read() override {
    host_.Work(L"Reading what the printer says about itself...", Effort::Read,
               [this, choice = host_.Chosen()](const ExchangeGate& gate) -> Worker::Finish {
                 return [this, reading = ReadChosen(*choice, gate)]() mutable {
                   host_.Facts().serialNumber = std::move(reading.serialNumber);
                   host_.Facts().modelName = std::move(reading.modelName);
                   Show(std::move(reading.identity.rows));
                 };
               });
  }

  DiagnosisSection Describe() const override { return {Title(), shown_, {}}; }

 private:
  std::span<const Anchor> Anchors() const override { return kAnchors; }
  void Init() override {
    rows_.Attach(Window(), IDC_IDENTITY_ROWS, IDC_IDENTITY_DETAILS, kRowColumns);
    Forget();
  }
  void Notify(const NMHDR& header) override {
    if (header.code == LVN_ITEMCHANGED) rows_.ShowDetails();
  }
  void AfterArranging() override { rows_.FitColumns(); }

  void Show(std::vector<Row>&& rows) {
    rows_.Fill(rows);
    shown_ = std::move(rows);
  }

  RowList rows_;
  std::vector<Row> shown_;
};

}  // namespace

std::unique_ptr<Page> MakeIdentityPage(PageHost& host) { return std::make_unique<IdentityWindow>(host); }

}  // namespace zt
