#include <windows.h>
#include <commctrl.h>

#include <string>
#include <utility>
#include <vector>

#include "CodePage.h"
#include "PostForm.h"
#include "RowPage_win.h"
#include "ServerPage.h"
#include "resource.h"

namespace zt {
namespace {

constexpr Anchor kAnchors[] = {{IDC_BASE_URL, 0, 0, 100, 0},
                               {IDC_POST_HINT, 0, 0, 100, 0},
                               {IDC_EXCHANGE_ROWS, 0, 0, 100, 70},
                               {IDC_DETAILS_LABEL, 0, 70, 100, 70},
                               {IDC_EXCHANGE_DETAILS, 0, 70, 100, 100}};

Ascii NameOf(ReportKind kind) {
  return kind == ReportKind::Protection ? Ascii("product-protection") : Ascii("print-volume");
}

class ServerWindow : public RowPage {
 public:
  explicit ServerWindow(PageHost& host)
      : RowPage(host, IDD_SERVER, L"Server", kAnchors, IDC_EXCHANGE_ROWS, IDC_EXCHANGE_DETAILS) {}

  void Forget() override {
    ShowRows(OneRow("Nothing asked yet", "", "Press one of the buttons: each makes one exchange with the server."));
  }

  // The server is asked by its buttons alone; here only what they would send is looked at.
  void Read() override { Enable(true); }

  void Enable(bool on) override {
    const PrinterFacts& facts = host_.Facts();
    EnableControl(IDC_CHECK_DATE, on && host_.Chosen());
    EnableControl(IDC_CHECK_SBX, on && host_.Chosen());
    EnableControl(IDC_POST_REPORT, on && !facts.document.empty());
    const std::wstring hint = facts.document.empty()
                                  ? Joined({"To post, collect a report on the page Report first."})
                                  : Joined({"Posts the ", NameOf(facts.documentKind), " report, as a test."});
    SetDlgItemTextW(Window(), IDC_POST_HINT, hint.c_str());
  }

 private:
  void Init() override {
    SendDlgItemMessageW(Window(), IDC_BASE_URL, EM_SETCUEBANNER, TRUE,
                        reinterpret_cast<LPARAM>(L"the report server that the agent was built for"));
    if (host_.Start().readPolicy) {
      if (const auto url = host_.Start().readPolicy().url) SetDlgItemTextW(Window(), IDC_BASE_URL, url->c_str());
    }
    RowPage::Init();
  }

  void Command(int control, int notification) override {
    if (notification != BN_CLICKED || !host_.Chosen()) return;
    if (control == IDC_CHECK_DATE) Ask(ServerQuestion::CheckDate, "Asking the server when a report is due...");
    if (control == IDC_CHECK_SBX) Ask(ServerQuestion::CheckSBX, "Asking the server for the protection limits...");
    if (control == IDC_POST_REPORT && IsPostConfirmed()) Ask(ServerQuestion::PostReport, "Posting the report...");
  }

  bool IsPostConfirmed() const {
    return IsConfirmed(Joined({"Post the ", NameOf(host_.Facts().documentKind), " report of \"", host_.Chosen()->name,
                               "\" to the server, marked as a test?"}),
                       L"Post report");
  }

  std::string BaseURL() const {
    const HWND field = Control(IDC_BASE_URL);
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(field)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(field, text.data(), static_cast<int>(text.size()))));
    return ToNarrow(text);
  }

  void Ask(ServerQuestion question, Ascii what) {
    const PrinterFacts& facts = host_.Facts();
    ServerRequest request{question, BaseURL(), facts.serialNumber, facts.modelName, facts.documentKind, {}};
    if (question == ServerQuestion::PostReport) request.document = facts.document;
    host_.Work(what, Effort::Act,
               MakeJob([request = std::move(request)](
                           const ExchangeGate& gate) { return AskServer(request, PostFormOverHttp, gate); },
                       [this](std::vector<Row>&& rows) {
                         ShowRows(std::move(rows));
                         list_.Choose(static_cast<int>(LineOfFailure(Rows())));
                       }));
  }
};

}  // namespace

std::unique_ptr<Page> MakeServerPage(PageHost& host) { return std::make_unique<ServerWindow>(host); }

}  // namespace zt
