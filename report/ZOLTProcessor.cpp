#include "ZOLTProcessor.h"

#include <new>
#include <optional>
#include <string>

#include "Codes.h"
#include "ReportXml.h"
#include "Trace.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

// IsHeldUp reports whether the run ends before it begins: a printer that could not be read last week is not even
// opened, and a server that failed last week holds up every queue.
bool IsHeldUp(const std::string& address, IZOLTSkipChecker& skipChecker) {
  if (skipChecker.IsLastIOFailNear(address)) {
    ZT_TRACE(Warning, "found last col fail. try later. bye~");
    return true;
  }
  if (skipChecker.IsLastServerFailNear()) {
    ZT_TRACE(Information, "found last server fail. try later bye~");
    return true;
  }
  return false;
}

// Identify opens the printer and reads the serial number under which its history is kept; nothing, which is recorded,
// when that is not possible.
std::optional<std::string> Identify(const std::string& address, IZOLTDataProvider& provider,
                                    IZOLTSkipChecker& skipChecker) {
  // This wait only lets the job that started the agent get ahead; what comes of it does not matter.
  bool jobsPending = false;
  provider.WaitForJobs(IZOLTDataProvider::kPollsBeforeReading, jobsPending);

  if (!provider.Initialize(true)) {
    ZT_TRACE(Warning, "not valid IO. bye~");
    skipChecker.RecordIOFail(address);
    return std::nullopt;
  }
  std::string serialNumber;
  if (!provider.GetSerialNumber(serialNumber)) {
    ZT_TRACE(Warning, "mandatory info not available! bye~");
    skipChecker.RecordIOFail(address);
    return std::nullopt;
  }
  return serialNumber;
}

// IsDue asks the local history, then the server, whether a report is wanted.
bool IsDue(const std::string& serialNumber, IZOLTReportResult& client, IZOLTSkipChecker& skipChecker) {
  if (skipChecker.IsLastSendNear(serialNumber, std::nullopt)) {
    ZT_TRACE(Information, "skip send success local. bye~");
    return false;
  }
  ServerAnswer answer;
  if (!client.CheckDate(serialNumber, answer)) {
    skipChecker.RecordServerFail();
    ZT_TRACE(Warning, "svr not connect. bye~");
    return false;
  }
  if (answer.IsNoMoreService()) {
    skipChecker.SetZOLTEnabled(false);
    ZT_TRACE(Information, "service stopped. bye~");
    return false;
  }
  if (const std::optional<int> days = answer.GetPostIntervalDays()) skipChecker.SetSendInterval(*days);
  // What the server knows about the last report overrides a lost local history.
  const std::optional<std::string> lastDate = answer.GetLastDate();
  if (lastDate && skipChecker.IsLastSendNear(serialNumber, *lastDate)) {
    skipChecker.RecordSendSuccess(serialNumber, *lastDate);
    ZT_TRACE(Information, "skipped by svr. bye~");
    return false;
  }
  return true;
}

// CollectText returns the text of the printer's report; nothing when it cannot be collected. The record, with the tree
// of a document that the printer has delivered, ends here: two such trees would be more memory than a run may take.
std::optional<std::string> CollectText(IZOLTDataProvider& provider) {
  ZOLTInformation record;
  if (!provider.CollectZOLT(record)) return std::nullopt;
  return record.ToText();
}

// CollectReport is CollectText with a look at the text. Memory that a document has used up is a failure like any other:
// it must be recorded, or each start would try again.
std::optional<std::string> CollectReport(IZOLTDataProvider& provider) {
  try {
    std::optional<std::string> document = CollectText(provider);
    // What is wrong with it is noted for support. The server decides what it takes.
    if (Codes codes; document && !ZOLTInformation::ValidateXml(*document, codes)) {
      ZT_TRACE(Warning, BeginningOf(codes));
    }
    return document;
  } catch (const std::bad_alloc&) {
    ZT_TRACE(Warning, "no memory for the report");
    return std::nullopt;
  }
}

// Collect waits for the queue and collects; nothing when jobs cannot be counted or, which is recorded, the report
// cannot be collected.
std::optional<std::string> Collect(const std::string& address, IZOLTDataProvider& provider,
                                   IZOLTSkipChecker& skipChecker) {
  bool jobsPending = false;
  if (!provider.WaitForJobs(IZOLTDataProvider::kPollsBeforeCollecting, jobsPending)) {
    ZT_TRACE(Error, "Failed to wait for job finished!!! bye~");
    return std::nullopt;
  }
  if (jobsPending) ZT_TRACE(Warning, "still jobs, but go...");

  std::optional<std::string> document = CollectReport(provider);
  if (!document) {
    skipChecker.RecordIOFail(address);
    ZT_TRACE(Information, "Failed to get info from device. Will retry at next week. bye~");
  }
  return document;
}

bool IsConfirmed(const ConfirmSend& confirm, const std::string& document) {
  const bool confirmed = confirm(document);
  ZT_TRACE(Information, (confirmed ? "sending accepted..." : "cancel sending..."));
  return confirmed;
}

void Post(const std::string& document, const std::string& serialNumber, IZOLTReportResult& client,
          IZOLTSkipChecker& skipChecker) {
  ServerAnswer answer;
  if (client.PostZOLT(document, answer)) {
    skipChecker.RecordSendSuccess(serialNumber, std::nullopt);
    ZT_TRACE(Information, "send sucessfully...");
  } else {
    skipChecker.RecordServerFail();
    ZT_TRACE(Information, "failed to send...");
  }
  if (answer.IsNoMoreService()) skipChecker.SetZOLTEnabled(false);
}

}  // namespace

void ZOLTProcessor::Run(const ZOLTRunOptions& options, IZOLTDataProvider& provider, IZOLTReportResult& client,
                        IZOLTSkipChecker& skipChecker) const {
  const std::string address = provider.GetPrinterAddress();
  ZT_TRACE(Information, "collecting from " << address);
  if (IsHeldUp(address, skipChecker)) return;
  const std::optional<std::string> serialNumber = Identify(address, provider, skipChecker);
  if (!serialNumber || !IsDue(*serialNumber, client, skipChecker)) return;
  const std::optional<std::string> document = Collect(address, provider, skipChecker);
  if (!document || (options.showResult && !IsConfirmed(confirm_, *document))) return;
  Post(*document, *serialNumber, client, skipChecker);
}

}  // namespace zt
