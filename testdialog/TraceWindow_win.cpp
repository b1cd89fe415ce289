#include <windows.h>

#include <string>

#include "CodePage.h"
#include "Page_win.h"
#include "SaveFile_win.h"
#include "resource.h"

namespace zt {
namespace {

constexpr Anchor kAnchors[] = {
    {IDC_TRACE_LINES, 0, 0, 100, 100}, {IDC_SAVE_TRACE, 100, 0, 100, 0}, {IDC_CLEAR_TRACE, 100, 0, 100, 0}};
constexpr std::size_t kLinesOfDiagnosis = 200;

// In the order of the box.
constexpr Severity kLevels[] = {Severity::Information, Severity::Warning, Severity::Error};
constexpr const wchar_t* kLevelNames[] = {L"All lines", L"Warnings and errors", L"Errors only"};

// Behind time, uptime, thread, source and level, so that as much as possible of a message is seen.
constexpr UINT kTabStops[] = {44, 82, 102, 212, 220};

class TraceWindow : public Page {
 public:
  explicit TraceWindow(PageHost& host) : Page(host, IDD_TRACE, L"Trace", kAnchors) {}

  // What was traced before belongs to the story.
  void Forget() override {}

  void Read() override {
    const HWND field = Control(IDC_TRACE_LINES);
    SendMessageW(field, WM_SETREDRAW, FALSE, 0);
    const std::wstring text = host_.Trace().Text(Least());
    SetWindowTextW(field,
                   text.empty() ? L"Nothing traced yet. What the other pages do is written here." : text.c_str());
    SendMessageW(field, EM_SETSEL, text.size(), static_cast<LPARAM>(text.size()));
    SendMessageW(field, WM_SETREDRAW, TRUE, 0);
    SendMessageW(field, EM_SCROLLCARET, 0, 0);
    InvalidateRect(field, nullptr, TRUE);
  }

  void TraceGrew() override {
    // Whoever has marked lines is about to copy them.
    DWORD begin = 0;
    DWORD end = 0;
    SendDlgItemMessageW(Window(), IDC_TRACE_LINES, EM_GETSEL, reinterpret_cast<WPARAM>(&begin),
                        reinterpret_cast<LPARAM>(&end));
    if (begin == end) Read();
  }

  DiagnosisSection Describe() const override {
    return {L"Last trace lines", {}, host_.Trace().Text(Severity::Information, kLinesOfDiagnosis)};
  }

 private:
  void Init() override {
    for (const wchar_t* name : kLevelNames) {
      SendDlgItemMessageW(Window(), IDC_TRACE_LEVEL, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name));
    }
    SendDlgItemMessageW(Window(), IDC_TRACE_LEVEL, CB_SETCURSEL, 0, 0);
    SendDlgItemMessageW(Window(), IDC_TRACE_LINES, EM_SETLIMITTEXT, 0, 0);
    SendDlgItemMessageW(Window(), IDC_TRACE_LINES, EM_SETTABSTOPS, std::size(kTabStops),
                        reinterpret_cast<LPARAM>(kTabStops));
  }

  void Command(int control, int notification) override {
    if (control == IDC_TRACE_LEVEL && notification == CBN_SELCHANGE) Read();
    if (notification != BN_CLICKED) return;
    if (control == IDC_CLEAR_TRACE) {
      host_.Trace().Clear();
      Read();
    }
    if (control == IDC_SAVE_TRACE) SaveWithDialog(Window(), L"trace.txt", L"txt", ToUtf8(host_.Trace().Text(Least())));
  }

  Severity Least() const {
    const auto chosen = static_cast<std::size_t>(SendDlgItemMessageW(Window(), IDC_TRACE_LEVEL, CB_GETCURSEL, 0, 0));
    return chosen < std::size(kLevels) ? kLevels[chosen] : Severity::Information;
  }
};

}  // namespace

std::unique_ptr<Page> MakeTracePage(PageHost& host) { return std::make_unique<TraceWindow>(host); }

}  // namespace zt
