#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <vector>

#include "Layout_win.h"
#include "PageTabs_win.h"
#include "PrinterPane_win.h"
#include "WindowDensity_win.h"
#include "Worker_win.h"

namespace zt {

// MainWindow is the test dialog: the printers on the left, the pages on the right, what is at work at the bottom.
class MainWindow : private PageHost {
 public:
  explicit MainWindow(const TestDialogStart& start);
  ~MainWindow() override;
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;

  // Run shows the window and returns when it is closed. False when it cannot be made.
  bool Run();

 private:
  // What is under way.
  struct UnderWay {
    Ascii what;
    Effort effort = Effort::Read;
    std::uint64_t begun = 0;
    bool cancelled = false;
    HWND focus = nullptr;  // had the focus before, and was switched off for as long
  };

  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam);

  // Of a page's host.
  const TestDialogStart& Start() const override { return start_; }
  SharedChoice Chosen() const override { return chosen_; }
  PrinterFacts& Facts() override { return facts_; }
  TraceLines& Trace() override { return trace_; }
  void Work(Ascii what, Effort effort, std::unique_ptr<Job> job) override;

  void Init();
  void Arrange();
  void ChangeDensity(int density, const RECT& suggested);
  SIZE SmallestSize() const;
  bool HandleKey(const MSG& message);

  void Command(int control);
  void Notify(const NMHDR& header);
  void Close();

  void ListPrinters();
  void ShowLocal(std::vector<PrinterChoice>&& printers);
  void Search();
  void ShowFound(const std::optional<std::vector<PrinterChoice>>& printers);
  void AddTyped();
  void ChoosePrinter();
  void ReadAgain();
  void CopyDiagnosis();

  void ShowPage();
  void TurnPage(int direction);
  void ReadNext();
  void Cancel();
  void EndWork();
  void EnableWork(bool on);
  void Say(std::initializer_list<Piece> text) const;
  void Tick();
  void LookForRun();

  const TestDialogStart& start_;
  HWND window_ = nullptr;
  DialogFont font_;  // outlives the controls that have it
  Layout layout_;
  PrinterPane pane_;
  TraceLines trace_;
  bool traceGrew_ = false;
  PageTabs pages_;
  SharedChoice chosen_;
  PrinterFacts facts_;
  std::optional<Worker> worker_;
  std::optional<UnderWay> underWay_;
  unsigned ticks_ = 0;
  bool listed_ = false;  // the printers were listed once
  bool closing_ = false;
};

}  // namespace zt
