#pragma once

#include <atomic>

#include "ExchangeGate.h"
#include "Handle.h"
#include "Task_win.h"

namespace zt {

// Worker makes one piece of work at a time on a thread of its own, so that the window stays alive.
class Worker {
 public:
  // What is left to do with the outcome, on the window's thread. Empty when the work broke off for want of memory.
  using Finish = Task<void()>;
  // The work itself. It looks at the gate, or hands it on, before each exchange.
  using Job = Task<Finish(const ExchangeGate& gate)>;

  // `message` is posted to the window when a job has ended.
  Worker(HWND window, UINT message) : window_(window), message_(message) {}
  // Cancels, and waits for the exchange that is under way.
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  // Start begins a job; not while another is under way. False when the system gives no thread.
  [[nodiscard]] bool Start(Job job);

  bool IsBusy() const { return static_cast<bool>(thread_); }

  // Cancel closes the gate of the job that is under way.
  void Cancel() { gateOpen_ = false; }

  // TakeOutcome is to be called when the message has come, and makes room for the next job.
  Finish TakeOutcome();

 private:
  static unsigned __stdcall Run(void* self);

  HWND window_;
  UINT message_;
  KernelHandle thread_;
  std::atomic<bool> gateOpen_ = true;
  Job job_;
  Finish finish_;
};

}  // namespace zt
