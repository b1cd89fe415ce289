#include <windows.h>

#include <string>
#include <utility>

#include "ChosenPrinter_win.h"
#include "Joined_win.h"
#include "Page_win.h"
#include "ProtectionPage.h"
#include "RowList_win.h"
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
    facts.verdict = L"A run now would end: the printer cannot be read.";
    return facts;
  }
  SettingsAccess access(baseName);
  return ReadProtection(*provider, access.skipChecker);
}

class ProtectionWindow : public Page {
 public:
  explicit ProtectionWindow(PageHost& host) : Page(host, IDD_PROTECTION, L"Protection") {}

  void Forget() override { Show({NothingRead(), L"", false}); }

  void Read() override {
    host_.Work(L"Reading the protection state...", Effort::Read,
               [this, choice = host_.Chosen(),
                &baseName = host_.Start().baseName](const ExchangeGate& gate) -> Worker::Finish {
                 return [this, facts = ReadChosen(*choice, baseName, gate)]() mutable { Show(std::move(facts)); };
               });
  }

  void Enable(bool on) override {
    EnableControl(IDC_SWITCH_ON, on && facts_.switchable);
    EnableControl(IDC_SWITCH_OFF, on && facts_.switchable);
  }

  DiagnosisSection Describe() const override { return {Title(), facts_.rows, facts_.verdict}; }

 private:
  std::span<const Anchor> Anchors() const override { return kAnchors; }

  void Init() override {
    rows_.Attach(Window(), IDC_PROTECTION_ROWS, 0, kRowColumns);
    Forget();
  }

  void Command(int control, int notification) override {
    if (notification != BN_CLICKED) return;
    if (control == IDC_SWITCH_ON) Switch(true);
    if (control == IDC_SWITCH_OFF) Switch(false);
  }

  void AfterArranging() override { rows_.FitColumns(); }

  void Switch(bool on) {
    const std::wstring command = on ? L"ON" : L"OFF";
    const SharedChoice choice = host_.Chosen();
    const std::wstring question = Joined({L"Send the command to switch product protection ", command, L" to \"",
                                          choice->name, L"\" (", DescribeTarget(*choice), L")?"});
    if (MessageBoxW(GetParent(Window()), question.c_str(), L"Product protection",
                    MB_OKCANCEL | MB_ICONWARNING | MB_DEFBUTTON2) != IDOK) {
      return;
    }
    host_.Work(L"Sending " + command + L" to the printer...", Effort::Act,
               [this, on, command, choice](const ExchangeGate& gate) -> Worker::Finish {
                 const std::unique_ptr<IZOLTDataProvider> provider = MakeProvider(*choice, gate);
                 const bool sent = provider->Initialize(false) && provider->SetProtection(on);
                 return [this, command, sent] {
                   facts_.rows.push_back({L"Command " + command, sent ? L"sent" : L"failed",
                                          sent ? L"The printer tells its new state once it has taken it: press F5."
                                               : L"The page Trace says where it failed."});
                   rows_.Fill(facts_.rows);
                 };
               });
  }

  void Show(ProtectionFacts&& facts) {
    facts_ = std::move(facts);
    rows_.Fill(facts_.rows);
    SetDlgItemTextW(Window(), IDC_VERDICT, facts_.verdict.c_str());
    Enable(true);
  }

  RowList rows_;
  ProtectionFacts facts_;
};

}  // namespace

std::unique_ptr<Page> MakeProtectionPage(PageHost& host) { return std::make_unique<ProtectionWindow>(host); }

}  // namespace zt
