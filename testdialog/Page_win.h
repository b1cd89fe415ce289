#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "Diagnosis.h"
#include "Handle.h"
#include "Job_win.h"
#include "Joined.h"
#include "Layout_win.h"
#include "PrinterChoice.h"
#include "ReportPage.h"
#include "TestDialog.h"
#include "TraceLines.h"

namespace zt {

// Effort says what becomes of work that the user cancels.
enum class Effort {
  Read,    // what came of it until then would mislead, and is dropped
  Search,  // what was found until then is kept
  Act,     // what was done is shown; no other printer can be chosen meanwhile
};

// SharedChoice is a chosen printer, for a job that may outlive the choice.
using SharedChoice = std::shared_ptr<const PrinterChoice>;

// PrinterFacts are what one page has found out about the chosen printer and others need.
struct PrinterFacts {
  std::string serialNumber;
  std::string modelName;
  std::string document;  // the report that was collected last; empty without one
  ReportKind documentKind = ReportKind::PrintVolume;
};

// PageHost is the main window as its pages see it.
class PageHost {
 public:
  virtual ~PageHost() = default;
  virtual const TestDialogStart& Start() const = 0;
  virtual SharedChoice Chosen() const = 0;  // null as long as no printer is chosen
  virtual PrinterFacts& Facts() = 0;        // of the chosen printer; empty when another one is chosen
  virtual TraceLines& Trace() = 0;
  // Work begins a job, unless one is under way; `what` is what the window says meanwhile.
  virtual void Work(Ascii what, Effort effort, std::unique_ptr<Job> job) = 0;
};

// Page is one page of the dialog: a child dialog, what it shows of the chosen printer, and its share of the diagnosis.
// All of it happens on the window's thread but for the jobs.
class Page {
 public:
  // `dialog` is the number of the template; `anchors` say how its controls move.
  Page(PageHost& host, int dialog, const wchar_t* title, std::span<const Anchor> anchors)
      : host_(host), dialog_(dialog), title_(title), anchors_(anchors) {}
  virtual ~Page() = default;
  Page(const Page&) = delete;
  Page& operator=(const Page&) = delete;

  const wchar_t* Title() const { return title_; }
  HWND Window() const { return window_; }

  // Create makes the child dialog, hidden. False when Windows cannot.
  bool Create(HWND parent);

  // Arrange places the controls anew, for another size or font.
  void Arrange();

  // Forget empties the page, as another printer was chosen.
  virtual void Forget() = 0;

  // Read begins to read what the page shows; called when the page is seen for the first time with this printer, and
  // when the user asks for it. WasRead is for the caller to remember that.
  virtual void Read() {}
  bool wasRead = false;

  // TraceGrew tells the page that is seen that there are new lines of the trace.
  virtual void TraceGrew() {}

  // Enable switches what begins work on or off.
  virtual void Enable(bool) {}

  virtual DiagnosisSection Describe() const = 0;

 protected:
  virtual void Init() = 0;
  virtual void Command(int /*control*/, int /*notification*/) {}
  virtual void Notify(const NMHDR& /*header*/) {}
  virtual void Draw(const DRAWITEMSTRUCT& /*item*/) {}
  virtual void AfterArranging() {}

  HWND Control(int number) const { return GetDlgItem(window_, number); }
  void EnableControl(int number, bool on) const;

  // IsConfirmed asks the user before something is changed.
  bool IsConfirmed(const std::wstring& question, const wchar_t* title) const;

  PageHost& host_;

 private:
  friend class PageWindow;
  int dialog_;
  const wchar_t* title_;
  std::span<const Anchor> anchors_;
  HWND window_ = nullptr;
  Layout layout_;
};

std::unique_ptr<Page> MakeIdentityPage(PageHost& host);
std::unique_ptr<Page> MakeSuppliesPage(PageHost& host);
std::unique_ptr<Page> MakeReportPage(PageHost& host);
std::unique_ptr<Page> MakeServerPage(PageHost& host);
std::unique_ptr<Page> MakeProtectionPage(PageHost& host);
std::unique_ptr<Page> MakeHistoryPage(PageHost& host);
std::unique_ptr<Page> MakeTracePage(PageHost& host);

}  // namespace zt
