#pragma once

#include <atomic>
#include <memory>

#include "Handle.h"
#include "Job_win.h"

namespace zt {

// Worker makes one piece of work at a time on a thread of its own, so that the window stays alive.
class Worker {
 public:
  // `message` is posted to the window when a job has ended.
  Worker(HWND window, UINT message) : window_(window), message_(message) {}
  // Cancels, and waits for the exchange that is under way.
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  // Start begins a job; not while another is under way. False when the system gives no thread.
  [[nodiscard]] bool Start(std::unique_ptr<Job> job);

  // Cancel closes the gate of the job that is under way.
  void Cancel() { gateOpen_ = false; }

  // TakeJob is to be called when the message has come, and makes room for the next job. Null when the work broke off
  // for want of memory.
  std::unique_ptr<Job> TakeJob();

 private:
  static unsigned __stdcall Run(void* self);

  HWND window_;
  UINT message_;
  KernelHandle thread_;
  std::atomic<bool> gateOpen_ = true;
  std::unique_ptr<Job> job_;
};

}  // namespace zt
