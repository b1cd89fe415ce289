#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Layout_win.h"
#include "Page_win.h"
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
  static constexpr std::size_t kPages = 7;

  // What is under way.
  struct Job {
    std::wstring what;
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
  void Work(const std::wstring& what, Effort effort, Worker::Job job) override;

  void Init();
  void Arrange();
  void ChangeDensity(int density, const RECT& suggested);
  SIZE SmallestSize() const;
  RECT PageArea() const;
  bool HandleKey(const MSG& message);

  void Command(int control);
  void Notify(const NMHDR& header);
  void Close();

  void ListPrinters();
  void Search();
  void AddTyped();
  void ChoosePrinter();
  void ReadAgain();
  void CopyDiagnosis();

  void ShowPage(std::size_t number);
  void TurnPage(int direction);
  void ReadNext();
  void Cancel();
  void EndWork();
  void EnableWork(bool on);
  void Say(const std::wstring& text) const;
  void Tick();
  void LookForRun();

  const TestDialogStart& start_;
  HWND window_ = nullptr;
  DialogFont font_;  // outlives the controls that have it
  Layout layout_;
  PrinterPane pane_;
  TraceLines trace_;
  bool traceGrew_ = false;
  std::array<std::unique_ptr<Page>, kPages> pages_;
  std::size_t page_ = 0;  // the one that is seen
  SharedChoice chosen_;
  PrinterFacts facts_;
  std::optional<Worker> worker_;
  std::optional<Job> job_;
  std::vector<Page*> toRead_;
  unsigned ticks_ = 0;
  bool listed_ = false;  // the printers were listed once
  bool placed_ = false;
  bool closing_ = false;
};

}  // namespace zt
