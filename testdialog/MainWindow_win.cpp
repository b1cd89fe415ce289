#include "MainWindow_win.h"

#include <windows.h>
#include <commctrl.h>

#include <utility>

#include "Clipboard_win.h"
#include "LocalPrinterList_win.h"
#include "NetworkSearch_win.h"
#include "SystemFacts_win.h"
#include "TraceFeed_win.h"
#include "WindowPlace_win.h"
#include "resource.h"

namespace zt {
namespace {

constexpr UINT kWorkEnded = WM_APP;
constexpr UINT kTraceLine = WM_APP + 1;

constexpr UINT_PTR kTimer = 1;
constexpr UINT kTickMilliseconds = 250;
constexpr unsigned kTicksBetweenLooks = 8;

constexpr Anchor kAnchors[] = {{IDC_PRINTERS, 0, 0, 35, 100},
                               {IDC_ADDRESS_LABEL, 0, 100, 35, 100},
                               {IDC_ADDRESS, 0, 100, 35, 100},
                               {IDC_ADD, 35, 100, 35, 100},
                               {IDC_SEARCH, 0, 100, 18, 100},
                               {IDC_READ_AGAIN, 18, 100, 35, 100},
                               {IDC_PAGES, 35, 0, 100, 100},
                               {IDC_STATUS, 0, 100, 100, 100},
                               {IDC_RUN_AT_WORK, 0, 100, 100, 100},
                               {IDC_PROGRESS, 0, 100, 20, 100},
                               {IDC_ELAPSED, 20, 100, 20, 100},
                               {IDC_CANCEL_WORK, 100, 100, 100, 100},
                               {IDC_COPY_DIAGNOSIS, 100, 100, 100, 100},
                               {IDCANCEL, 100, 100, 100, 100}};

// Controls that begin work.
constexpr int kWorkControls[] = {IDC_ADD, IDC_SEARCH, IDC_READ_AGAIN};

constexpr wchar_t kRunAtWork[] = L"A run of the agent is at work on this computer. The dialog does not wait for it.";

std::wstring Seconds(std::uint64_t since) { return Joined({(GetTickCount64() - since) / 1000, " s"}); }

bool IsPressed(int key) { return GetKeyState(key) < 0; }

}  // namespace

MainWindow::MainWindow(const TestDialogStart& start) : start_(start), pages_(*this) {}

MainWindow::~MainWindow() = default;

bool MainWindow::Run() {
  if (!CreateDialogParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_MAIN), nullptr, &MainWindow::Procedure,
                          reinterpret_cast<LPARAM>(this))) {
    return false;
  }
  MSG message = {};
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (HandleKey(message) || IsDialogMessageW(window_, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return true;
}

INT_PTR CALLBACK MainWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(window, DWLP_USER, lParam);
    auto* self = reinterpret_cast<MainWindow*>(lParam);
    self->window_ = window;
    self->Init();
    return FALSE;
  }
  auto* self = reinterpret_cast<MainWindow*>(GetWindowLongPtrW(window, DWLP_USER));
  return self ? self->Handle(message, wParam, lParam) : FALSE;
}

INT_PTR MainWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) Arrange();
      return FALSE;
    case WM_GETMINMAXINFO: {
      const SIZE smallest = SmallestSize();
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {smallest.cx, smallest.cy};
      return TRUE;
    }
    case WM_DPICHANGED:
      ChangeDensity(HIWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
      return TRUE;
    case WM_COMMAND:
      Command(LOWORD(wParam));
      return TRUE;
    case WM_NOTIFY:
      Notify(*reinterpret_cast<const NMHDR*>(lParam));
      return FALSE;
    case WM_TIMER:
      Tick();
      return TRUE;
    case kWorkEnded:
      EndWork();
      return TRUE;
    case kTraceLine:
      trace_.Add(TakeTraceLine(lParam));
      traceGrew_ = true;
      return TRUE;
    case WM_CLOSE:
      Close();
      return TRUE;
    case WM_DESTROY:
      PostQuitMessage(0);
      return TRUE;
    default:
      return FALSE;
  }
}

// Beginning and end.

void MainWindow::Init() {
  LeaveScalingToProgram(window_);
  font_.Learn(window_);
  layout_.Learn(window_, kAnchors);
  SendMessageW(window_, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(LoadIconW(nullptr, IDI_INFORMATION)));
  pane_.Attach(window_);
  worker_.emplace(window_, kWorkEnded);
  pages_.Attach(window_);
  FeedTrace(window_, kTraceLine);
  if (!RestorePlace(window_)) {
    // The smallest size has room for all.
    const SIZE smallest = SmallestSize();
    SetWindowPos(window_, nullptr, 0, 0, smallest.cx, smallest.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  }
  Arrange();
  Say({""});
  SetTimer(window_, kTimer, kTickMilliseconds, nullptr);
  ShowWindow(window_, IsZoomed(window_) ? SW_SHOWMAXIMIZED : SW_SHOW);
  SetFocus(GetDlgItem(window_, IDC_PRINTERS));
  LookForRun();
  ListPrinters();
}

void MainWindow::Close() {
  if (underWay_) {
    closing_ = true;
    Cancel();
    Say({"Closing as soon as the exchange under way has ended..."});
    return;
  }
  KillTimer(window_, kTimer);
  StorePlace(window_);
  EndTrace(window_, kTraceLine);
  DestroyWindow(window_);
}

// Size.

SIZE MainWindow::SmallestSize() const {
  RECT outer = {};
  RECT inner = {};
  GetWindowRect(window_, &outer);
  GetClientRect(window_, &inner);
  const SIZE smallest = layout_.Smallest(window_);
  return {smallest.cx + (outer.right - outer.left) - inner.right,
          smallest.cy + (outer.bottom - outer.top) - inner.bottom};
}

void MainWindow::Arrange() {
  layout_.Arrange(window_);
  pane_.FitColumns();
  pages_.Arrange();
}

void MainWindow::ChangeDensity(int density, const RECT& suggested) {
  font_.Fit(window_, density);
  SetWindowPos(window_, nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
               suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
  Arrange();
}

// Keys and buttons.

bool MainWindow::HandleKey(const MSG& message) {
  if (message.message != WM_KEYDOWN || (message.hwnd != window_ && !IsChild(window_, message.hwnd))) return false;
  const bool control = IsPressed(VK_CONTROL);
  switch (message.wParam) {
    case VK_F5:
      ReadAgain();
      return true;
    case VK_ESCAPE:
      // While there is work, Esc ends that first.
      if (!underWay_ || underWay_->cancelled) return false;
      Cancel();
      return true;
    case VK_TAB:
      if (control) TurnPage(IsPressed(VK_SHIFT) ? -1 : 1);
      return control;
    case VK_NEXT:
    case VK_PRIOR:
      if (control) TurnPage(message.wParam == VK_NEXT ? 1 : -1);
      return control;
    default:
      return control && HandleListKey(message.hwnd, message.wParam);
  }
}

void MainWindow::Command(int control) {
  switch (control) {
    case IDCANCEL:
      Close();
      return;
    case IDOK:
      if (GetFocus() == GetDlgItem(window_, IDC_ADDRESS)) AddTyped();
      return;
    case IDC_ADD:
      AddTyped();
      return;
    case IDC_SEARCH:
      Search();
      return;
    case IDC_READ_AGAIN:
      ReadAgain();
      return;
    case IDC_CANCEL_WORK:
      Cancel();
      return;
    case IDC_COPY_DIAGNOSIS:
      CopyDiagnosis();
      return;
    default:
      return;
  }
}

void MainWindow::Notify(const NMHDR& header) {
  if (header.idFrom == IDC_PAGES && header.code == TCN_SELCHANGE) {
    pages_.ShowChosen();
    ShowPage();
  }
  if (header.idFrom == IDC_PRINTERS && header.code == LVN_ITEMCHANGED) {
    const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
    if ((change.uNewState & LVIS_SELECTED) && !(change.uOldState & LVIS_SELECTED)) ChoosePrinter();
  }
}

// Printers.

void MainWindow::ListPrinters() {
  Work("Listing the printers of this computer...", Effort::Search,
       MakeJob(&ListLocalPrinters, [this](std::vector<PrinterChoice>&& printers) { ShowLocal(std::move(printers)); }));
}

void MainWindow::ShowLocal(std::vector<PrinterChoice>&& printers) {
  pane_.SetLocal(std::move(printers));
  if (chosen_) {
    pane_.Choose(*chosen_);
  } else if (const PrinterChoice* queue = pane_.FindQueue(start_.queueName)) {
    pane_.Choose(*queue);
  } else if (!start_.queueName.empty()) {
    Say({"There is no queue \"", start_.queueName, "\" on this computer. Choose another printer."});
  } else if (!listed_) {
    pane_.ChooseFirst();
  }
  listed_ = true;
}

void MainWindow::Search() {
  Work("Searching the network...", Effort::Search,
       MakeJob([](const ExchangeGate&) { return SearchNetwork(); },
               [this](std::optional<std::vector<PrinterChoice>>&& printers) { ShowFound(printers); }));
}

void MainWindow::ShowFound(const std::optional<std::vector<PrinterChoice>>& printers) {
  if (!printers) {
    Say({"The search could not be sent: this computer has no network."});
  } else if (printers->empty()) {
    Say({"No printer has answered. A printer in another subnet, or with another SNMP community, does not."});
  } else {
    const std::size_t fresh = pane_.AddNetwork(*printers);
    Say({printers->size(), printers->size() == 1 ? Ascii(" printer has") : Ascii(" printers have"), " answered, ",
         fresh, " of them new in the list."});
  }
}

void MainWindow::AddTyped() {
  const std::wstring address = pane_.TypedAddress();
  if (address.empty()) {
    Say({"Type the name or the IP address of a printer first."});
    SetFocus(GetDlgItem(window_, IDC_ADDRESS));
    return;
  }
  pane_.AddNetwork({NetworkPrinter({}, address)});
  if (const PrinterChoice* printer = pane_.FindAddress(address)) pane_.Choose(*printer);
}

void MainWindow::ChoosePrinter() {
  const PrinterChoice* const choice = pane_.Chosen();
  if (!choice || (chosen_ && *choice == *chosen_)) return;
  // std::make_shared would bring more of the run-time library into the program.
  chosen_ = std::make_unique<const PrinterChoice>(*choice);
  facts_ = {};
  if (underWay_ && underWay_->effort == Effort::Read) Cancel();
  pages_.Forget();
  ShowPage();
}

void MainWindow::ReadAgain() {
  if (underWay_) return;
  if (!chosen_ || GetFocus() == GetDlgItem(window_, IDC_PRINTERS)) {
    ListPrinters();
    return;
  }
  pages_.Seen().wasRead = false;
  ReadNext();
}

void MainWindow::CopyDiagnosis() {
  std::vector<DiagnosisSection> sections;
  sections.push_back(DescribeComputer(chosen_.get()));
  pages_.Describe(sections);
  const std::wstring text = MakeDiagnosis(sections, chosen_ ? std::wstring_view(chosen_->target.community) : L"");
  Say({CopyToClipboard(window_, text) ? Ascii("The diagnosis is on the clipboard.")
                                      : Ascii("Another program holds the clipboard. Try again.")});
}

// Pages.

void MainWindow::ShowPage() {
  pages_.Seen().Enable(!underWay_);
  ReadNext();
}

void MainWindow::TurnPage(int direction) {
  pages_.Turn(direction);
  ShowPage();
}

void MainWindow::ReadNext() {
  while (!underWay_) {
    Page* const page = pages_.NextToRead();
    if (!page) return;
    page->Read();
  }
}

// Work.

void MainWindow::Work(Ascii what, Effort effort, std::unique_ptr<Job> job) {
  if (underWay_) return;
  underWay_ = UnderWay{what, effort, GetTickCount64(), false, nullptr};
  Say({what});
  EnableWork(false);
  if (!worker_->Start(std::move(job))) {
    underWay_.reset();
    EnableWork(true);
    Say({"Windows gives no thread for the work. Try again."});
  }
}

void MainWindow::Cancel() {
  if (!underWay_ || underWay_->cancelled) return;
  underWay_->cancelled = true;
  worker_->Cancel();
  Say({"Cancelling..."});
}

void MainWindow::EndWork() {
  const std::unique_ptr<Job> job = worker_->TakeJob();
  if (!underWay_) return;
  const UnderWay ended = *underWay_;
  underWay_.reset();
  if (closing_) {
    Close();
    return;
  }
  Say({ended.cancelled ? Ascii("Cancelled after ") : Ascii("Done after "), Seconds(ended.begun), "."});
  if (!job) {
    Say({"There was not enough memory for: ", ended.what});
  } else if (!ended.cancelled || ended.effort != Effort::Read) {
    job->Finish();
  }
  EnableWork(true);
  const HWND cancel = GetDlgItem(window_, IDC_CANCEL_WORK);
  if (GetFocus() == cancel) SetFocus(ended.focus ? ended.focus : GetDlgItem(window_, IDC_PRINTERS));
  EnableWindow(cancel, FALSE);
  ReadNext();
}

void MainWindow::EnableWork(bool on) {
  const HWND focus = GetFocus();
  const HWND cancel = GetDlgItem(window_, IDC_CANCEL_WORK);
  if (!on) EnableWindow(cancel, TRUE);
  for (const int control : kWorkControls) EnableWindow(GetDlgItem(window_, control), on);
  EnableWindow(GetDlgItem(window_, IDC_PRINTERS), on || underWay_->effort != Effort::Act);
  pages_.Seen().Enable(on);
  const HWND progress = GetDlgItem(window_, IDC_PROGRESS);
  ShowWindow(progress, on ? SW_HIDE : SW_SHOWNA);
  SendMessageW(progress, PBM_SETMARQUEE, on ? FALSE : TRUE, 0);
  SetDlgItemTextW(window_, IDC_ELAPSED, on ? L"" : L"0 s");
  // A control that is switched off would keep the keyboard to itself.
  if (!on && focus && !IsWindowEnabled(focus)) {
    underWay_->focus = focus;
    SetFocus(cancel);
  }
}

void MainWindow::Say(std::initializer_list<Piece> text) const {
  SetDlgItemTextW(window_, IDC_STATUS, Joined(text).c_str());
}

void MainWindow::Tick() {
  if (underWay_) SetDlgItemTextW(window_, IDC_ELAPSED, Seconds(underWay_->begun).c_str());
  if (std::exchange(traceGrew_, false)) pages_.Seen().TraceGrew();
  if (++ticks_ % kTicksBetweenLooks == 0) LookForRun();
}

void MainWindow::LookForRun() {
  const std::wstring queue = chosen_ && chosen_->kind == ChoiceKind::Queue ? chosen_->name : std::wstring();
  const bool atWork = start_.isRunAtWork && start_.isRunAtWork(queue);
  SetDlgItemTextW(window_, IDC_RUN_AT_WORK, atWork ? kRunAtWork : L"");
}

}  // namespace zt
