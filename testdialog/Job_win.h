#pragma once

#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include "ExchangeGate.h"

namespace zt {

// Job is a piece of work of the dialog.
class Job {
 public:
  virtual ~Job() = default;

  // Run does the work, on the worker's thread. It looks at the gate, or hands it on, before each exchange.
  virtual void Run(const ExchangeGate& gate) = 0;

  // Finish does what is left to do with the outcome, on the window's thread.
  virtual void Finish() = 0;
};

// MakeJob makes a job of two functions: what the first one returns, on the worker's thread, is handed to the second
// one, on the window's.
template <class Work, class Show>
std::unique_ptr<Job> MakeJob(Work work, Show show) {
  struct Made : Job {
    Made(Work&& doWork, Show&& doShow) : work_(std::move(doWork)), show_(std::move(doShow)) {}
    void Run(const ExchangeGate& gate) override { outcome_.emplace(work_(gate)); }
    void Finish() override { show_(*std::move(outcome_)); }
    Work work_;
    Show show_;
    std::optional<std::invoke_result_t<Work&, const ExchangeGate&>> outcome_;
  };
  return std::make_unique<Made>(std::move(work), std::move(show));
}

}  // namespace zt
