#pragma once

#include <utility>

#include "ConfirmSend.h"
#include "IZOLTDataProvider.h"
#include "IZOLTReportResult.h"
#include "IZOLTSkipChecker.h"

namespace zt {

// ZOLTRunOptions are the choices of one print-volume run.
struct ZOLTRunOptions {
  bool showResult = false;  // the user sees the document before it is sent, and may cancel
};

// ZOLTProcessor carries out the print-volume report of one print queue: whether it is due, collecting, posting, and
// recording the outcome for the runs to come.
class ZOLTProcessor {
 public:
  explicit ZOLTProcessor(ConfirmSend confirm) : confirm_(std::move(confirm)) {}

  // Run makes one report. It has no result: each outcome is told by a trace line and by what is recorded through the
  // skip checker. The objects are borrowed for the run.
  void Run(const ZOLTRunOptions& options, IZOLTDataProvider& provider, IZOLTReportResult& client,
           IZOLTSkipChecker& skipChecker) const;

 private:
  ConfirmSend confirm_;
};

}  // namespace zt
