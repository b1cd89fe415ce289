#include <windows.h>

#include <string>
#include <utility>

#include "ChosenPrinter_win.h"
#include "ProtectionPage.h"
#include "RowPage_win.h"
#include "SettingsAccess_win.h"
#include "resource.h"

namespace zt {
namespace {

constexpr Anchor kAnchors[] = {{IDC_PROTECTION_ROWS, 0, 0, 100, 80},
                               {IDC_VERDICT_LABEL, 0, 80, 100, 80},
                               {IDC_VERDICT, 0, 80, 100, 100},
                               {IDC_SWITCH_ON, 0, 100, 0, 100},
                               {IDC_SWITCH_OFF, 0, 100, 0, 100}};

ProtectionFacts ReadChosen(const PrinterChoice& choice, const std::wstring& baseName, const ExchangeGate& gate) {
  const std::unique_ptr<IZOLTDataProvider> provider = MakeProvider(choice, gate);
  if (!provider->Initialize(false)) {
    ProtectionFacts facts;
    facts.rows = NoAnswer();
    facts.verdict = Joined({"A run now would end: the printer cannot be read."});
    return facts;
  }
  SettingsAccess access(baseName);
  return ReadProtection(*provider, access.skipChecker);
}

class ProtectionWindow : public RowPage {
 public:
  explicit ProtectionWindow(PageHost& host)
      : RowPage(host, IDD_PROTECTION, L"Protection", kAnchors, IDC_PROTECTION_ROWS, 0) {}

  void Forget() override { Show({NothingRead(), L"", false}); }

  void Read() override {
    host_.Work("Reading the protection state...", Effort::Read,
               MakeJob([choice = host_.Chosen(), &baseName = host_.Start().baseName](
                           const ExchangeGate& gate) { return ReadChosen(*choice, baseName, gate); },
                       [this](ProtectionFacts&& facts) { Show(std::move(facts)); }));
  }

  void Enable(bool on) override {
    EnableControl(IDC_SWITCH_ON, on && switchable_);
    EnableControl(IDC_SWITCH_OFF, on && switchable_);
  }

  DiagnosisSection Describe() const override { return {Title(), Rows(), verdict_}; }

 private:
  void Command(int control, int notification) override {
    if (notification != BN_CLICKED) return;
    if (control == IDC_SWITCH_ON) Switch(true);
    if (control == IDC_SWITCH_OFF) Switch(false);
  }

  void Switch(bool on) {
    const SharedChoice choice = host_.Chosen();
    const std::wstring question =
        Joined({"Send the command to switch product protection ", on ? Ascii("ON") : Ascii("OFF"), " to \"",
                choice->name, "\" (", DescribeTarget(*choice), ")?"});
    if (!IsConfirmed(question, L"Product protection")) return;
    host_.Work(on ? Ascii("Sending ON to the printer...") : Ascii("Sending OFF to the printer..."), Effort::Act,
               MakeJob(
                   [on, choice](const ExchangeGate& gate) {
                     const std::unique_ptr<IZOLTDataProvider> provider = MakeProvider(*choice, gate);
                     return provider->Initialize(false) && provider->SetProtection(on);
                   },
                   [this, on](bool sent) { AddAnswer(on, sent); }));
  }

  void AddAnswer(bool on, bool sent) {
    std::vector<Row> rows = Rows();
    AddRow(rows, on ? Ascii("Command ON") : Ascii("Command OFF"), sent ? Ascii("sent") : Ascii("failed"),
           sent ? Ascii("The printer tells its new state once it has taken it: press F5.")
                : Ascii("The page Trace says where it failed."));
    ShowRows(std::move(rows));
  }

  void Show(ProtectionFacts&& facts) {
    ShowRows(std::move(facts.rows));
    verdict_ = std::move(facts.verdict);
    switchable_ = facts.switchable;
    SetDlgItemTextW(Window(), IDC_VERDICT, verdict_.c_str());
    Enable(true);
  }

  std::wstring verdict_;
  bool switchable_ = false;
};

}  // namespace

std::unique_ptr<Page> MakeProtectionPage(PageHost& host) { return std::make_unique<ProtectionWindow>(host); }

}  // namespace zt
