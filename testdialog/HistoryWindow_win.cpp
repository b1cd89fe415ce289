#include <windows.h>
#include <commctrl.h>

#include <string>
#include <utility>
#include <vector>

#include "ChosenPrinter_win.h"
#include "CodePage.h"
#include "PrinterInformation.h"
#include "RowPage_win.h"
#include "RunRules.h"
#include "SettingsAccess_win.h"
#include "resource.h"

namespace zt {
namespace {

constexpr Anchor kAnchors[] = {{IDC_HISTORY_ROWS, 0, 0, 100, 45},   {IDC_SECOND_LABEL, 0, 45, 100, 45},
                               {IDC_RULES, 0, 45, 100, 90},         {IDC_DETAILS_LABEL, 0, 90, 100, 90},
                               {IDC_RULE_DETAILS, 0, 90, 100, 100}, {IDC_CLEAR_HISTORY, 0, 100, 0, 100}};
constexpr RowColumn kRuleColumns[] = {{L"Run", 62}, {L"Now", 34}, {L"Rule", 208}};

Standing StandingOf(const PrinterChoice& choice, const TestDialogStart& start, const ExchangeGate& gate) {
  Standing standing;
  if (start.readPolicy) {
    const TestDialogStart::Policy policy = start.readPolicy();
    standing.disabledByAdministrator = policy.disabled;
    standing.skipRulesOff = policy.skipRulesOff;
    standing.virtualTest = policy.virtualTest;
  }
  standing.address = MakeProvider(choice, gate)->GetPrinterAddress();
  if (choice.kind == ChoiceKind::Queue) {
    PrinterInformation queue;
    standing.queueFound = queue.ReadPrinterInfo(choice.name);
    standing.queueIsLocal = CheckQueueIsLocal(queue);
    standing.queueName = ToNarrow(choice.name);
  } else {
    standing.queueFound = choice.kind == ChoiceKind::Virtual;
  }
  return standing;
}

class HistoryWindow : public Page {
 public:
  explicit HistoryWindow(PageHost& host) : Page(host, IDD_HISTORY, L"History", kAnchors) {}

  void Forget() override { Show({NothingRead(), {}, {}}, false); }

  void Read() override { Look(Effort::Read, "Reading the history...", false); }

  void Enable(bool on) override { EnableControl(IDC_CLEAR_HISTORY, on && known_); }

  DiagnosisSection Describe() const override {
    DiagnosisSection section{Title(), history_.rows, {}};
    for (const RuleLine& line : history_.printVolume) AddRow(section.rows, "Print volume", line.sentence);
    for (const RuleLine& line : history_.protection) AddRow(section.rows, "Protection", line.sentence);
    return section;
  }

 private:
  void Init() override {
    rows_.Attach(Window(), IDC_HISTORY_ROWS, IDC_RULE_DETAILS, kRowColumns);
    rules_.Attach(Window(), IDC_RULES, IDC_RULE_DETAILS, kRuleColumns);
    Forget();
  }

  void Command(int control, int notification) override {
    if (control != IDC_CLEAR_HISTORY || notification != BN_CLICKED) return;
    const std::wstring question = Joined({"Clear what is stored about \"", host_.Chosen()->name,
                                          "\": its last reports, its last failure and its toner life?"
                                          "\n\nThe next run then treats it as a new printer."});
    if (IsConfirmed(question, L"Clear history")) Look(Effort::Act, "Clearing the history...", true);
  }

  void Notify(const NMHDR& header) override {
    // Both lists have the one field; it shows what was chosen last.
    const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
    if (header.code != LVN_ITEMCHANGED || !(change.uNewState & LVIS_SELECTED)) return;
    (header.idFrom == IDC_RULES ? rules_ : rows_).ShowDetails();
  }

  void AfterArranging() override {
    rows_.FitColumns();
    rules_.FitColumns();
  }

  void Look(Effort effort, Ascii what, bool clear) {
    host_.Work(what, effort,
               MakeJob(
                   [clear, choice = host_.Chosen(), serialNumber = host_.Facts().serialNumber,
                    &start = host_.Start()](const ExchangeGate& gate) {
                     SettingsAccess access(start.baseName);
                     Standing standing = StandingOf(*choice, start, gate);
                     standing.settingsUsable = access.usable;
                     standing.serialNumber = serialNumber;
                     if (clear) ClearHistory(standing, access.settings);
                     return ReadHistory(standing, access.settings, access.skipChecker);
                   },
                   [this](History&& history) { Show(std::move(history), true); }));
  }

  void Show(History&& history, bool known) {
    history_ = std::move(history);
    known_ = known;
    rows_.Fill(history_.rows);
    rules_.Clear();
    AddRules(L"Print volume", history_.printVolume);
    AddRules(L"Protection", history_.protection);
    rules_.Shown();
    // What the user came for is the rule that stops a run.
    rules_.Choose(FirstStop());
    Enable(true);
  }

  // The line of the first rule that stops a run; the first one when none does.
  int FirstStop() const {
    int line = 0;
    for (const std::vector<RuleLine>* rules : {&history_.printVolume, &history_.protection}) {
      for (const RuleLine& rule : *rules) {
        if (rule.stops) return line;
        ++line;
      }
    }
    return 0;
  }

  void AddRules(const wchar_t* run, const std::vector<RuleLine>& rules) {
    for (const RuleLine& rule : rules) rules_.Add({run, rule.stops ? L"stops" : L"goes on", rule.sentence});
  }

  RowList rows_;
  RowList rules_;
  History history_;
  bool known_ = false;
};

}  // namespace

std::unique_ptr<Page> MakeHistoryPage(PageHost& host) { return std::make_unique<HistoryWindow>(host); }

}  // namespace zt
