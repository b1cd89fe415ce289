#include "MainWindow_win.h"

#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "Clipboard_win.h"
#include "CodePage.h"
#include "Joined_win.h"
#include "LocalPrinterList_win.h"
#include "Logger.h"
#include "NetworkSearch_win.h"
#include "SystemFacts_win.h"
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

std::wstring Seconds(std::uint64_t since) { return std::to_wstring((GetTickCount64() - since) / 1000) + L" s"; }

bool IsPressed(int key) { return GetKeyState(key) < 0; }

bool IsOfClass(HWND window, const wchar_t* name) {
  wchar_t found[32] = L"";
  GetClassNameW(window, found, static_cast<int>(std::size(found)));
  return lstrcmpiW(found, name) == 0;
}

}  // namespace

MainWindow::MainWindow(const TestDialogStart& start)
    : start_(start), pages_{MakeIdentityPage(*this), MakeSuppliesPage(*this),   MakeReportPage(*this),
                            MakeServerPage(*this),   MakeProtectionPage(*this), MakeHistoryPage(*this),
                            MakeTracePage(*this)} {}

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
    case kTraceLine: {
      const std::unique_ptr<TraceLine> line(reinterpret_cast<TraceLine*>(lParam));
      trace_.Add(std::move(*line));
      traceGrew_ = true;
      return TRUE;
    }
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
  const HWND tabs = GetDlgItem(window_, IDC_PAGES);
  HWND behind = GetDlgItem(window_, IDC_READ_AGAIN);
  for (std::size_t number = 0; number < kPages; ++number) {
    Page& page = *pages_[number];
    TCITEMW tab = {};
    tab.mask = TCIF_TEXT;
    tab.pszText = const_cast<wchar_t*>(page.Title());
    SendMessageW(tabs, TCM_INSERTITEMW, number, reinterpret_cast<LPARAM>(&tab));
    if (!page.Create(window_)) continue;
    // Before the tabs in the order of the Tab key, as on a property sheet: what comes first lies on top.
    SetWindowPos(page.Window(), behind, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    behind = page.Window();
  }
  // Before a line of the trace can come.
  processLogger.Listen([window = window_](Severity severity, const std::string& line) {
    auto copy = std::make_unique<TraceLine>(TraceLine{severity, ToWide(line)});
    if (PostMessageW(window, kTraceLine, 0, reinterpret_cast<LPARAM>(copy.get()))) static_cast<void>(copy.release());
  });
  placed_ = RestorePlace(window_);
  if (!placed_) {
    // The smallest size has room for all; a little more is nicer to read.
    const SIZE smallest = SmallestSize();
    SetWindowPos(window_, nullptr, 0, 0, smallest.cx, smallest.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    placed_ = true;
  }
  Arrange();
  ShowPage(0);
  Say(L"");
  SetTimer(window_, kTimer, kTickMilliseconds, nullptr);
  ShowWindow(window_, IsZoomed(window_) ? SW_SHOWMAXIMIZED : SW_SHOW);
  SetFocus(GetDlgItem(window_, IDC_PRINTERS));
  LookForRun();
  ListPrinters();
}

void MainWindow::Close() {
  if (job_) {
    closing_ = true;
    Cancel();
    Say(L"Closing as soon as the exchange under way has ended...");
    return;
  }
  KillTimer(window_, kTimer);
  StorePlace(window_);
  processLogger.Listen(nullptr);
  MSG message = {};
  while (PeekMessageW(&message, window_, kTraceLine, kTraceLine, PM_REMOVE)) {
    const std::unique_ptr<TraceLine> line(reinterpret_cast<TraceLine*>(message.lParam));
  }
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

RECT MainWindow::PageArea() const {
  const HWND tabs = GetDlgItem(window_, IDC_PAGES);
  RECT area = {};
  GetWindowRect(tabs, &area);
  MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&area), 2);
  SendMessageW(tabs, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
  return area;
}

void MainWindow::Arrange() {
  layout_.Arrange(window_);
  pane_.FitColumns();
  const RECT area = PageArea();
  for (const std::unique_ptr<Page>& page : pages_) {
    SetWindowPos(page->Window(), nullptr, area.left, area.top, area.right - area.left, area.bottom - area.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    // A page that keeps its size may have got another font.
    page->Arrange();
  }
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
      if (!job_ || job_->cancelled) return false;
      Cancel();
      return true;
    case VK_TAB:
      if (control) TurnPage(IsPressed(VK_SHIFT) ? -1 : 1);
      return control;
    case VK_NEXT:
    case VK_PRIOR:
      if (control) TurnPage(message.wParam == VK_NEXT ? 1 : -1);
      return control;
    case 'C':
      if (!control || !IsOfClass(message.hwnd, WC_LISTVIEWW)) return false;
      CopyChosenLines(message.hwnd);
      return true;
    case 'A':
      if (!control || !IsOfClass(message.hwnd, WC_LISTVIEWW)) return false;
      if (message.hwnd != GetDlgItem(window_, IDC_PRINTERS)) {
        ListView_SetItemState(message.hwnd, -1, LVIS_SELECTED, LVIS_SELECTED);
      }
      return true;
    default:
      return false;
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
    ShowPage(static_cast<std::size_t>(SendDlgItemMessageW(window_, IDC_PAGES, TCM_GETCURSEL, 0, 0)));
  }
  if (header.idFrom == IDC_PRINTERS && header.code == LVN_ITEMCHANGED) {
    const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
    if ((change.uNewState & LVIS_SELECTED) && !(change.uOldState & LVIS_SELECTED)) ChoosePrinter();
  }
}

// Printers.

void MainWindow::ListPrinters() {
  Work(L"Listing the printers of this computer...", Effort::Search, [this](const ExchangeGate& gate) -> Worker::Finish {
    return [this, printers = ListLocalPrinters(gate)]() mutable {
      const SharedChoice before = chosen_;
      pane_.SetLocal(std::move(printers));
      if (before) {
        pane_.Choose(*before);
      } else if (const PrinterChoice* queue = pane_.FindQueue(start_.queueName)) {
        pane_.Choose(*queue);
      } else if (!listed_ && start_.queueName.empty()) {
        pane_.ChooseFirst();
      } else if (!start_.queueName.empty()) {
        Say(Joined({L"There is no queue \"", start_.queueName, L"\" on this computer. Choose another printer."}));
      }
      listed_ = true;
    };
  });
}

void MainWindow::Search() {
  Work(L"Searching the network...", Effort::Search, [this](const ExchangeGate&) -> Worker::Finish {
    return [this, printers = SearchNetwork()] {
      if (!printers) {
        Say(L"The search could not be sent: this computer has no network.");
      } else if (printers->empty()) {
        Say(L"No printer has answered. A printer in another subnet, or with another SNMP community, does not.");
      } else {
        const std::size_t fresh = pane_.AddNetwork(*printers);
        Say(Joined({std::to_wstring(printers->size()), printers->size() == 1 ? L" printer has" : L" printers have",
                    L" answered, ", std::to_wstring(fresh), L" of them new in the list."}));
      }
    };
  });
}

void MainWindow::AddTyped() {
  const std::wstring address = pane_.TypedAddress();
  if (address.empty()) {
    Say(L"Type the name or the IP address of a printer first.");
    SetFocus(GetDlgItem(window_, IDC_ADDRESS));
    return;
  }
  pane_.AddNetwork({NetworkPrinter({}, address)});
  if (const PrinterChoice* printer = pane_.FindAddress(address)) pane_.Choose(*printer);
}

void MainWindow::ChoosePrinter() {
  const PrinterChoice* const choice = pane_.Chosen();
  if (!choice || (chosen_ && *choice == *chosen_)) return;
  chosen_ = std::make_shared<const PrinterChoice>(*choice);
  facts_ = {};
  toRead_.clear();
  if (job_ && job_->effort == Effort::Read) Cancel();
  for (const std::unique_ptr<Page>& page : pages_) {
    page->wasRead = false;
    page->Forget();
  }
  // The first page finds out what others need to know.
  toRead_.push_back(pages_[0].get());
  ShowPage(page_);
}

void MainWindow::ReadAgain() {
  if (job_) return;
  if (!chosen_ || GetFocus() == GetDlgItem(window_, IDC_PRINTERS)) {
    ListPrinters();
    return;
  }
  toRead_.assign({pages_[page_].get()});
  ReadNext();
}

void MainWindow::CopyDiagnosis() {
  std::vector<DiagnosisSection> sections;
  DiagnosisSection general;
  general.title = L"Computer and printer";
  const auto add = [&general](const wchar_t* label, const std::wstring& value) {
    Row& row = general.rows.emplace_back();
    row.label = label;
    row.value = value;
  };
  add(L"Written", LocalTimeText());
  add(L"Windows", WindowsVersion());
  add(L"Agent", AgentVersion());
  add(L"Printer", chosen_ ? chosen_->name : L"none chosen");
  if (chosen_) {
    add(L"Driver", chosen_->driver);
    add(L"Port", chosen_->port);
    add(L"Leads to", DescribeTarget(*chosen_));
  }
  sections.push_back(std::move(general));
  for (const std::unique_ptr<Page>& page : pages_) sections.push_back(page->Describe());
  const std::wstring text = MakeDiagnosis(sections, chosen_ ? std::wstring_view(chosen_->target.community) : L"");
  Say(CopyToClipboard(window_, text) ? L"The diagnosis is on the clipboard."
                                     : L"Another program holds the clipboard. Try again.");
}

// Pages.

void MainWindow::ShowPage(std::size_t number) {
  if (number >= kPages) return;
  page_ = number;
  SendDlgItemMessageW(window_, IDC_PAGES, TCM_SETCURSEL, number, 0);
  for (std::size_t other = 0; other < kPages; ++other) {
    if (other != number) ShowWindow(pages_[other]->Window(), SW_HIDE);
  }
  Page& page = *pages_[number];
  ShowWindow(page.Window(), SW_SHOWNA);
  page.Enable(!job_);
  page.TraceGrew();
  // Only the first page and the one that is seen are wanted.
  std::erase_if(toRead_, [this](const Page* waiting) { return waiting != pages_[0].get(); });
  if (chosen_ && !page.wasRead && std::find(toRead_.begin(), toRead_.end(), &page) == toRead_.end()) {
    toRead_.push_back(&page);
  }
  ReadNext();
}

void MainWindow::TurnPage(int direction) {
  const auto count = static_cast<int>(kPages);
  // The focus must not stay on a page that nobody sees.
  if (IsChild(pages_[page_]->Window(), GetFocus())) SetFocus(GetDlgItem(window_, IDC_PAGES));
  ShowPage(static_cast<std::size_t>((static_cast<int>(page_) + direction + count) % count));
}

void MainWindow::ReadNext() {
  while (!job_ && !toRead_.empty()) {
    Page* const page = toRead_.front();
    toRead_.erase(toRead_.begin());
    page->wasRead = true;
    page->Read();
  }
}

// Work.

void MainWindow::Work(const std::wstring& what, Effort effort, Worker::Job job) {
  if (job_) return;
  job_ = Job{what, effort, GetTickCount64(), false, nullptr};
  Say(what);
  EnableWork(false);
  if (!worker_->Start(std::move(job))) {
    job_.reset();
    EnableWork(true);
    Say(L"Windows gives no thread for the work. Try again.");
  }
}

void MainWindow::Cancel() {
  if (!job_ || job_->cancelled) return;
  job_->cancelled = true;
  worker_->Cancel();
  Say(L"Cancelling...");
}

void MainWindow::EndWork() {
  Worker::Finish finish = worker_->TakeOutcome();
  if (!job_) return;
  const Job job = std::move(*job_);
  job_.reset();
  if (closing_) {
    Close();
    return;
  }
  Say(Joined({job.cancelled ? L"Cancelled after " : L"Done after ", Seconds(job.begun), L"."}));
  if (!finish) {
    Say(L"There was not enough memory for: " + job.what);
  } else if (!job.cancelled || job.effort != Effort::Read) {
    finish();
  }
  EnableWork(true);
  const HWND cancel = GetDlgItem(window_, IDC_CANCEL_WORK);
  if (GetFocus() == cancel) SetFocus(job.focus ? job.focus : GetDlgItem(window_, IDC_PRINTERS));
  EnableWindow(cancel, FALSE);
  ReadNext();
}

void MainWindow::EnableWork(bool on) {
  const HWND focus = GetFocus();
  const HWND cancel = GetDlgItem(window_, IDC_CANCEL_WORK);
  if (!on) EnableWindow(cancel, TRUE);
  for (const int control : kWorkControls) EnableWindow(GetDlgItem(window_, control), on);
  EnableWindow(GetDlgItem(window_, IDC_PRINTERS), on || job_->effort != Effort::Act);
  pages_[page_]->Enable(on);
  const HWND progress = GetDlgItem(window_, IDC_PROGRESS);
  ShowWindow(progress, on ? SW_HIDE : SW_SHOWNA);
  SendMessageW(progress, PBM_SETMARQUEE, on ? FALSE : TRUE, 0);
  SetDlgItemTextW(window_, IDC_ELAPSED, on ? L"" : L"0 s");
  // A control that is switched off would keep the keyboard to itself.
  if (!on && focus && !IsWindowEnabled(focus)) {
    job_->focus = focus;
    SetFocus(cancel);
  }
}

void MainWindow::Say(const std::wstring& text) const { SetDlgItemTextW(window_, IDC_STATUS, text.c_str()); }

void MainWindow::Tick() {
  if (job_) SetDlgItemTextW(window_, IDC_ELAPSED, Seconds(job_->begun).c_str());
  if (std::exchange(traceGrew_, false)) pages_[page_]->TraceGrew();
  if (++ticks_ % kTicksBetweenLooks == 0) LookForRun();
}

void MainWindow::LookForRun() {
  const std::wstring queue = chosen_ && chosen_->kind == ChoiceKind::Queue ? chosen_->name : std::wstring();
  const bool atWork = start_.isRunAtWork && start_.isRunAtWork(queue);
  SetDlgItemTextW(window_, IDC_RUN_AT_WORK, atWork ? kRunAtWork : L"");
}

}  // namespace zt
