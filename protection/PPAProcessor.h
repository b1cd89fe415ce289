#pragma once

#include <functional>
#include <string>
#include <utility>

#include "ConfirmSend.h"
#include "IZOLTDataProvider.h"
#include "IZOLTReportResult.h"
#include "IZOLTSkipChecker.h"
#include "ProtectionRules.h"

namespace zt {

// PPARunOptions are the choices of one product-protection run.
struct PPARunOptions {
  bool showResult = false;        // the user sees the document before it is sent, and may cancel
  std::wstring language = L"EN";  // of the agreement
};

// ShowAgreement asks the user whether the printer behind the queue is to stop when a consumable is exhausted.
// `countryIs52` tells the dialog that the printer was made for that country index.
using ShowAgreement =
    std::function<Agreement(const std::wstring& queue, const std::wstring& language, bool countryIs52)>;

// PPAProcessor carries out the product-protection run of one print queue: it reads the printer's protection state and
// toner life, fetches the limits of the model, asks the user where a limit is passed, switches the printer's protection
// and reports.
class PPAProcessor {
 public:
  PPAProcessor(ConfirmSend confirm, ShowAgreement showAgreement)
      : confirm_(std::move(confirm)), showAgreement_(std::move(showAgreement)) {}

  // Run has no result: each outcome is told by a line of trace or debugger output and by what is recorded through the
  // skip checker. The objects are borrowed for the run.
  void Run(const PPARunOptions& options, IZOLTDataProvider& provider, IZOLTReportResult& client,
           IZOLTSkipChecker& skipChecker) const;

 private:
  ConfirmSend confirm_;
  ShowAgreement showAgreement_;
};

}  // namespace zt
