#include <windows.h>
#include <commctrl.h>
#include <richedit.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "ChosenPrinter_win.h"
#include "Clipboard_win.h"
#include "Page_win.h"
#include "RowList_win.h"
#include "SaveFile_win.h"
#include "Words.h"
#include "resource.h"

namespace zt {
namespace {

constexpr Anchor kAnchors[] = {{IDC_COLLECT, 100, 0, 100, 0},      {IDC_COPY_REPORT, 100, 0, 100, 0},
                               {IDC_SAVE_REPORT, 100, 0, 100, 0},  {IDC_REPORT, 0, 0, 100, 75},
                               {IDC_SECOND_LABEL, 0, 75, 100, 75}, {IDC_FINDINGS, 0, 75, 100, 100}};
constexpr RowColumn kColumns[] = {{L"Finding", 300}};

// Colouring takes its time, and a device's own document may have a million elements.
constexpr std::size_t kMostSpans = 4000;

int Brightness(COLORREF colour) {
  return (GetRValue(colour) * 30 + GetGValue(colour) * 59 + GetBValue(colour) * 11) / 100;
}

// The first of the system's colours that can be read on the field's background; a user may have chosen any.
COLORREF ColourOf(SpanKind kind) {
  constexpr int kLeastContrast = 96;
  const int background = Brightness(GetSysColor(COLOR_WINDOW));
  for (const int candidate : {kind == SpanKind::Tag ? COLOR_HOTLIGHT : COLOR_GRAYTEXT,
                              kind == SpanKind::Tag ? COLOR_HIGHLIGHT : COLOR_WINDOWTEXT}) {
    const COLORREF colour = GetSysColor(candidate);
    const int contrast = Brightness(colour) - background;
    if (contrast >= kLeastContrast || contrast <= -kLeastContrast) return colour;
  }
  return GetSysColor(COLOR_WINDOWTEXT);
}

Report Collect(ReportKind kind, const PrinterChoice& choice, bool agreement, const ExchangeGate& gate) {
  const std::unique_ptr<IZOLTDataProvider> provider = MakeProvider(choice, gate);
  if (provider->Initialize(false)) return MakeReport(kind, *provider, agreement);
  Report report;
  report.problem = Joined({"The printer does not answer. The page Identity says what is known about why."});
  if (choice.kind != ChoiceKind::Virtual && choice.target.kind == PortKind::None) report.problem = choice.why;
  return report;
}

class ReportWindow : public Page {
 public:
  explicit ReportWindow(PageHost& host) : Page(host, IDD_REPORT, L"Report", kAnchors) {}

  void Forget() override {
    Report none;
    none.problem = Joined({"No report yet. Press Collect: it reads the printer as a run does, and sends nothing."});
    Show(std::move(none));
  }

  void Read() override {
    const ReportKind kind =
        IsDlgButtonChecked(Window(), IDC_PRODUCT_PROTECTION) ? ReportKind::Protection : ReportKind::PrintVolume;
    const SharedChoice choice = host_.Chosen();
    const bool agreement = host_.Start().readAgreement && host_.Start().readAgreement(choice->driver);
    host_.Work(
        "Collecting the report...", Effort::Read,
        MakeJob([kind, choice, agreement](const ExchangeGate& gate) { return Collect(kind, *choice, agreement, gate); },
                [this, kind](Report&& report) {
                  host_.Facts().document = report.bytes;
                  host_.Facts().documentKind = kind;
                  Show(std::move(report));
                }));
  }

  void Enable(bool on) override {
    EnableControl(IDC_COLLECT, on);
    EnableControl(IDC_COPY_REPORT, on && report_.collected);
    EnableControl(IDC_SAVE_REPORT, on && report_.collected);
  }

  DiagnosisSection Describe() const override {
    DiagnosisSection section{Title(), {}, report_.collected ? report_.shown : report_.problem};
    for (const Finding& finding : report_.findings) AddRow(section.rows, "Finding", finding.text);
    return section;
  }

 private:
  void Init() override {
    CheckRadioButton(Window(), IDC_PRINT_VOLUME, IDC_PRODUCT_PROTECTION, IDC_PRINT_VOLUME);
    findings_.Attach(Window(), IDC_FINDINGS, 0, kColumns);
    SendMessageW(Control(IDC_REPORT), EM_EXLIMITTEXT, 0, 64 << 20);
    SendMessageW(Control(IDC_REPORT), EM_SETBKGNDCOLOR, 0, static_cast<LPARAM>(GetSysColor(COLOR_WINDOW)));
    Forget();
  }

  void Command(int control, int notification) override {
    if (notification != BN_CLICKED) return;
    if (control == IDC_COLLECT && host_.Chosen()) Read();
    if (control == IDC_COPY_REPORT) CopyToClipboard(Window(), WithLineEnds(report_.shown));
    if (control == IDC_SAVE_REPORT) SaveWithDialog(Window(), L"report.xml", L"xml", report_.bytes);
  }

  void Notify(const NMHDR& header) override {
    const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
    if (header.code != LVN_ITEMCHANGED || !(change.uNewState & LVIS_SELECTED)) return;
    if (const auto chosen = static_cast<std::size_t>(findings_.Chosen()); chosen < report_.findings.size()) {
      ShowElement(report_.findings[chosen].element);
    }
  }

  void AfterArranging() override { findings_.FitColumns(); }

  void Show(Report&& report) {
    report_ = std::move(report);
    // One character a line end, as the control counts them.
    std::wstring text = report_.collected ? report_.shown : report_.problem;
    std::replace(text.begin(), text.end(), L'\n', L'\r');
    const HWND field = Control(IDC_REPORT);
    SetWindowTextW(field, text.c_str());  // drawn at once, or else the scroll bar of a long text may be missing
    SendMessageW(field, WM_SETREDRAW, FALSE, 0);
    Colour({0, text.size()}, GetSysColor(COLOR_WINDOWTEXT));
    for (std::size_t number = 0; number < std::min(report_.spans.size(), kMostSpans); ++number) {
      Colour(report_.spans[number].range, ColourOf(report_.spans[number].kind));
    }
    Select({0, 0});
    SendMessageW(field, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(field, nullptr, TRUE);

    findings_.Clear();
    for (const Finding& finding : report_.findings) findings_.Add({finding.text});
    if (report_.collected && report_.findings.empty()) findings_.Add({L"Nothing is missing and nothing is wrong."});
    findings_.Shown();
    Enable(true);
  }

  void Select(TextRange range) const {
    CHARRANGE selection = {static_cast<LONG>(range.begin), static_cast<LONG>(range.end)};
    SendMessageW(Control(IDC_REPORT), EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&selection));
  }

  void Colour(TextRange range, COLORREF colour) const {
    Select(range);
    CHARFORMATW format = {};
    format.cbSize = sizeof(format);
    format.dwMask = CFM_COLOR;
    format.crTextColor = colour;
    SendMessageW(Control(IDC_REPORT), EM_SETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
  }

  void ShowElement(TextRange range) const {
    Select(range);
    SendMessageW(Control(IDC_REPORT), EM_SCROLLCARET, 0, 0);
  }

  RowList findings_;
  Report report_;
};

}  // namespace

std::unique_ptr<Page> MakeReportPage(PageHost& host) { return std::make_unique<ReportWindow>(host); }

}  // namespace zt
