#include <utility>

#include "ChosenPrinter_win.h"
#include "IdentityPage.h"
#include "NetworkProbe_win.h"
#include "RowPage_win.h"
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
    reading.identity.rows = OneRow("Printer", "not found", choice.why);
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

class IdentityWindow : public RowPage {
 public:
  explicit IdentityWindow(PageHost& host)
      : RowPage(host, IDD_IDENTITY, L"Identity", kAnchors, IDC_IDENTITY_ROWS, IDC_IDENTITY_DETAILS) {}

  void Forget() override { ShowRows(NothingRead()); }

  void Read() override {
    host_.Work("Reading what the printer says about itself...", Effort::Read,
               MakeJob([choice = host_.Chosen()](const ExchangeGate& gate) { return ReadChosen(*choice, gate); },
                       [this](Reading&& reading) {
                         host_.Facts().serialNumber = std::move(reading.serialNumber);
                         host_.Facts().modelName = std::move(reading.modelName);
                         ShowRows(std::move(reading.identity.rows));
                       }));
  }
};

}  // namespace

std::unique_ptr<Page> MakeIdentityPage(PageHost& host) { return std::make_unique<IdentityWindow>(host); }

}  // namespace zt
