#include "ZOLTProcessor.h"

#include <new>
#include <optional>
#include <string>

#include "ReportXml.h"
#include "Trace.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

// CollectReport answers the text of the printer's report; nothing when it cannot be collected. Memory that a document
// has used up is a failure like any other: it must be recorded, or each start would try again.
std::optional<std::string> CollectReport(IZOLTDataProvider& provider) {
  try {
    ZOLTInformation record;
    if (!provider.CollectZOLT(record)) return std::nullopt;
    std::string document = record.ToText();
    // What is wrong with it is noted for support. The server decides what it takes.
    if (std::string findings; !ZOLTInformation::ValidateXml(document, findings)) {
      ZT_TRACE(Warning, BeginningOfFindings(findings));
    }
    return document;
  } catch (const std::bad_alloc&) {
    ZT_TRACE(Warning, "no memory for the report");
    return std::nullopt;
  }
}

}  // namespace

// The order of the checks matters: a printer that could not be read last week is not even opened, a server that failed
// last week holds up every queue, and only a printer whose serial number can be read is looked up in the history.
void ZOLTProcessor::Run(const ZOLTRunOptions& options, IZOLTDataProvider& provider, IZOLTReportResult& client,
                        IZOLTSkipChecker& skipChecker) const {
  const std::string address = provider.GetPrinterAddress();
  ZT_TRACE(Information, "collecting from " << address);
  if (skipChecker.IsLastIOFailNear(address)) {
    ZT_TRACE(Warning, "found last col fail. try later. bye~");
    return;
  }
  if (skipChecker.IsLastServerFailNear()) {
    ZT_TRACE(Information, "found last server fail. try later bye~");
    return;
  }

  // This wait only lets the job that started the agent get ahead; what comes of it does not matter.
  bool jobsPending = false;
  provider.WaitForJobs(IZOLTDataProvider::kPollsBeforeReading, jobsPending);

  if (!provider.Initialize(true)) {
    ZT_TRACE(Warning, "not valid IO. bye~");
    skipChecker.RecordIOFail(address);
    return;
  }
  std::string serialNumber;
  if (!provider.GetSerialNumber(serialNumber)) {
    ZT_TRACE(Warning, "mandatory info not available! bye~");
    skipChecker.RecordIOFail(address);
    return;
  }
  if (skipChecker.IsLastSendNear(serialNumber, std::nullopt)) {
    ZT_TRACE(Information, "skip send success local. bye~");
    return;
  }

  ServerAnswer answer;
  if (!client.CheckDate(serialNumber, answer)) {
    skipChecker.RecordServerFail();
    ZT_TRACE(Warning, "svr not connect. bye~");
    return;
  }
  if (answer.IsNoMoreService()) {
    skipChecker.SetZOLTEnabled(false);
    ZT_TRACE(Information, "service stopped. bye~");
    return;
  }
  if (const std::optional<int> days = answer.GetPostIntervalDays()) skipChecker.SetSendInterval(*days);
  // What the server knows about the last report overrides a lost local history.
  const std::optional<std::string> lastDate = answer.GetLastDate();
  if (lastDate && skipChecker.IsLastSendNear(serialNumber, *lastDate)) {
    skipChecker.RecordSendSuccess(serialNumber, *lastDate);
    ZT_TRACE(Information, "skipped by svr. bye~");
    return;
  }

  if (!provider.WaitForJobs(IZOLTDataProvider::kPollsBeforeCollecting, jobsPending)) {
    ZT_TRACE(Error, "Failed to wait for job finished!!! bye~");
    return;
  }
  if (jobsPending) ZT_TRACE(Warning, "still jobs, but go...");

  const std::optional<std::string> document = CollectReport(provider);
  if (!document) {
    skipChecker.RecordIOFail(address);
    ZT_TRACE(Information, "Failed to get info from device. Will retry at next week. bye~");
    return;
  }
  if (options.showResult) {
    if (!confirm_(*document)) {
      ZT_TRACE(Information, "cancel sending...");
      return;
    }
    ZT_TRACE(Information, "sending accepted...");
  }

  if (client.PostZOLT(*document, answer)) {
    skipChecker.RecordSendSuccess(serialNumber, std::nullopt);
    ZT_TRACE(Information, "send sucessfully...");
  } else {
    skipChecker.RecordServerFail();
    ZT_TRACE(Information, "failed to send...");
  }
  if (answer.IsNoMoreService()) skipChecker.SetZOLTEnabled(false);
}

}  // namespace zt
