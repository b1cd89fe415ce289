#include <windows.h>
#include <commctrl.h>

#include <string>
#include <utility>
#include <vector>

#include "CodePage.h"
#include "Joined_win.h"
#include "Page_win.h"
#include "PostForm.h"
#include "RowList_win.h"
#include "ServerPage.h"
#include "resource.h"

namespace zt {
namespace {

constexpr Anchor kAnchors[] = {{IDC_BASE_URL, 0, 0, 100, 0},
                               {IDC_POST_HINT, 0, 0, 100, 0},
                               {IDC_EXCHANGE_ROWS, 0, 0, 100, 70},
                               {IDC_DETAILS_LABEL, 0, 70, 100, 70},
                               {IDC_EXCHANGE_DETAILS, 0, 70, 100, 100}};

const wchar_t* NameOf(ReportKind kind) {
  return kind == ReportKind::Protection ? L"product-protection" : L"print-volume";
}

class ServerWindow : public Page {
 public:
  explicit ServerWindow(PageHost& host) : Page(host, IDD_SERVER, L"Server") {}

  void Forget() override {
    Show(OneRow(L"Nothing asked yet", L"", L"Press one of the buttons: each makes one exchange with the server."));
  }

  // The server is asked by its buttons alone; here only what they would send is looked at.
  void Read() override { Enable(true); }

  void Enable(bool on) override {
    const PrinterFacts& facts = host_.Facts();
    EnableControl(IDC_CHECK_DATE, on && host_.Chosen());
    EnableControl(IDC_CHECK_SBX, on && host_.Chosen());
    EnableControl(IDC_POST_REPORT, on && !facts.document.empty());
    SetDlgItemTextW(Window(), IDC_POST_HINT,
                    facts.document.empty()
                        ? L"To post, collect a report on the page Report first."
                        : Joined({L"Posts the ", NameOf(facts.documentKind), L" report, as a test."}).c_str());
  }

  DiagnosisSection Describe() const override { return {Title(), shown_, {}}; }

 private:
  std::span<const Anchor> Anchors() const override { return kAnchors; }

  void Init() override {
    rows_.Attach(Window(), IDC_EXCHANGE_ROWS, IDC_EXCHANGE_DETAILS, kRowColumns);
    SendDlgItemMessageW(Window(), IDC_BASE_URL, EM_SETCUEBANNER, TRUE,
                        reinterpret_cast<LPARAM>(L"the report server that the agent was built for"));
    if (host_.Start().readPolicy) {
      if (const auto url = host_.Start().readPolicy().url) SetDlgItemTextW(Window(), IDC_BASE_URL, url->c_str());
    }
    Forget();
  }

  void Command(int control, int notification) override {
    if (notification != BN_CLICKED || !host_.Chosen()) return;
    if (control == IDC_CHECK_DATE) Ask(ServerQuestion::CheckDate, L"Asking the server when a report is due...");
    if (control == IDC_CHECK_SBX) Ask(ServerQuestion::CheckSBX, L"Asking the server for the protection limits...");
    if (control == IDC_POST_REPORT && IsPostConfirmed()) Ask(ServerQuestion::PostReport, L"Posting the report...");
  }

  void Notify(const NMHDR& header) override {
    if (header.code == LVN_ITEMCHANGED) rows_.ShowDetails();
  }

  void AfterArranging() override { rows_.FitColumns(); }

  bool IsPostConfirmed() const {
    const std::wstring question = Joined({L"Post the ", NameOf(host_.Facts().documentKind), L" report of \"",
                                          host_.Chosen()->name, L"\" to the server, marked as a test?"});
    return MessageBoxW(GetParent(Window()), question.c_str(), L"Post report",
                       MB_OKCANCEL | MB_ICONWARNING | MB_DEFBUTTON2) == IDOK;
  }

  std::string BaseURL() const {
    const HWND field = Control(IDC_BASE_URL);
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(field)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(field, text.data(), static_cast<int>(text.size()))));
    return ToNarrow(text);
  }

  void Ask(ServerQuestion question, const std::wstring& what) {
    const PrinterFacts& facts = host_.Facts();
    ServerRequest request{question, BaseURL(), facts.serialNumber, facts.modelName, facts.documentKind, {}};
    if (question == ServerQuestion::PostReport) request.document = facts.document;
    host_.Work(what, Effort::Act, [this, request = std::move(request)](const ExchangeGate& gate) -> Worker::Finish {
      return [this, rows = AskServer(request, PostFormOverHttp, gate)]() mutable { Show(std::move(rows)); };
    });
  }

  void Show(std::vector<Row>&& rows) {
    rows_.Fill(rows);
    shown_ = std::move(rows);
  }

  RowList rows_;
  std::vector<Row> shown_;
};

}  // namespace

std::unique_ptr<Page> MakeServerPage(PageHost& host) { return std::make_unique<ServerWindow>(host); }

}  // namespace zt
