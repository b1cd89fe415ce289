#include "Worker_win.h"

#include <windows.h>
#include <process.h>

#include <exception>
#include <utility>

namespace zt {

Worker::~Worker() {
  Cancel();
  if (thread_) WaitForSingleObject(thread_.Get(), INFINITE);
}

bool Worker::Start(std::unique_ptr<Job> job) {
  gateOpen_ = true;
  job_ = std::move(job);
  thread_ = KernelHandle(reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, &Worker::Run, this, 0, nullptr)));
  return static_cast<bool>(thread_);
}

std::unique_ptr<Job> Worker::TakeJob() {
  // It has posted its message and is about to end.
  if (thread_) WaitForSingleObject(thread_.Get(), INFINITE);
  thread_.Reset();
  return std::move(job_);
}

unsigned __stdcall Worker::Run(void* self) {
  auto& worker = *static_cast<Worker*>(self);
  try {
    worker.job_->Run([&worker] { return worker.gateOpen_.load(); });
  } catch (const std::exception&) {
    worker.job_.reset();
  }
  PostMessageW(worker.window_, worker.message_, 0, 0);
  return 0;
}

}  // namespace zt
