#include "PPAProcessor.h"

#include "CodePage.h"
#include "PPAInformation.h"
#include "ReportXml.h"
#include "Trace.h"

namespace zt {
namespace {

// AskServer fetches the limits of the model and stores them. False when the server has ended the service. A server that
// cannot be reached leaves the policy in force.
bool AskServer(IZOLTDataProvider& provider, IZOLTReportResult& client, IZOLTSkipChecker& skipChecker,
               ServerPolicy& policy) {
  std::string modelName;
  provider.GetModelName(modelName);  // without a name the server answers the limit of all models
  ServerAnswer answer;
  if (!client.CheckSBX(modelName, answer)) return true;
  if (answer.IsNoMoreService()) {
    skipChecker.SetPPAEnabled(false);
    ZT_TRACE(Information, "ppa service stopped. bye~");
    return false;
  }
  policy = MergePolicy(policy, answer);
  skipChecker.StoreServerPolicy(policy);
  if (const std::optional<int> days = answer.GetPPNormalIntervalDays()) skipChecker.SetPPNormalInterval(*days);
  return true;
}

void ReportNoLimit(std::uint32_t tonerLife) {
  WriteDebug(
      (TextBuilder() << "[ZT] Current SBXLevel is not limitted = " << static_cast<std::int32_t>(tonerLife)).Take());
}

}  // namespace

void PPAProcessor::Run(const PPARunOptions& options, IZOLTDataProvider& provider, IZOLTReportResult& client,
                       IZOLTSkipChecker& skipChecker) const {
  ZT_TRACE(Information, "[ZT] refill  -ZOLT_SBX_COLLECTING_MODE start...");
  std::uint32_t announced = 0;
  if (!provider.Initialize(true) || !provider.CheckSBXSupport(&announced)) {
    constexpr std::string_view kMessage = "[ZT] failed to check SBX  bye~";
    ZT_TRACE(Warning, kMessage);
    WriteDebug(kMessage);
    return;
  }
  const auto state = static_cast<SBXState>(announced);
  if (!IsProtectable(state)) {
    ZT_TRACE(Warning, "[ZT] device is not include sbx string..");
    return;
  }
  std::uint32_t tonerLife = 0;
  std::uint32_t changeCount = 0;
  if (!provider.GetTonerLife(&tonerLife, &changeCount)) {
    ZT_TRACE(Warning, "[UA] failed to get toner life info~");
    return;
  }
  const std::wstring queue = provider.GetQueueName();
  skipChecker.RecordTonerLife(ToNarrow(queue), tonerLife);
  ServerPolicy policy;
  const bool policyStored = skipChecker.GetServerPolicy(policy);
  std::string countryIndex;
  if (!provider.GetCountryIndex(countryIndex) || countryIndex.empty()) {
    WriteDebug("[ZT] device is not supported countryIndex");
    return;
  }
  const auto ask = [&] { return showAgreement_(queue, options.language, countryIndex == "52"); };

  Agreement agreement = Agreement::DisagreedUnreported;  // until somebody is asked
  const Question question = QuestionForProtectedPrinter(state, tonerLife, policy, countryIndex);
  if (question == Question::Ask) agreement = ask();
  if (question != Question::None && IsRefused(agreement)) provider.SetProtection(false);

  const bool askedFirst = IsServerAskedFirst(policyStored, state);
  if (askedFirst && !AskServer(provider, client, skipChecker, policy)) return;
  if (IsTonerFresh(tonerLife)) {
    ReportNoLimit(tonerLife);
    return;
  }
  if (!IsReportDue(state, agreement)) return;

  // Printing goes first, but a queue that never drains or cannot be counted does not hold up the report.
  bool jobsPending = false;
  provider.WaitForJobs(IZOLTDataProvider::kPollsBeforeReading, jobsPending);
  std::string serialNumber;
  if (!provider.GetSerialNumber(serialNumber)) {
    ZT_TRACE(Warning, "[UA] failed to get serial nubmer~");
    return;
  }
  if (!skipChecker.UpdateTonerChangeCount(serialNumber, changeCount) &&
      skipChecker.IsLastPPSendNear(serialNumber, std::nullopt)) {
    ZT_TRACE(Warning, "[UA] CanSkipByLastPPSendTime - skip send success local. bye~");
    return;
  }
  if (!askedFirst && !AskServer(provider, client, skipChecker, policy)) return;
  if (IsBelowLimit(tonerLife, policy)) {
    ReportNoLimit(tonerLife);
    return;
  }
  provider.WaitForJobs(IZOLTDataProvider::kPollsBeforeCollecting, jobsPending);
  PPAInformation record;
  if (!provider.CollectSBX(record)) {
    WriteDebug("[ZT] Failed to get info from device. Will retry at next week. bye~");
    return;
  }
  if (!provider.GetHostVersion(record)) WriteDebug("[ZT] Failed to get host version");
  record.SetSBX(std::to_string(tonerLife));

  if (state == SBXState::Off) {
    agreement = ask();
    const bool agreed = agreement == Agreement::Agreed;
    WriteDebug(agreed ? "[ZT] Product protection agree value = agree"
                      : "[ZT] Product protection agree value = disagree");
    if (agreed) {
      ZT_TRACE(Information, "[ZT] refill - SendCommandViaPrinterQueue (ON).");
      provider.SetProtection(true);
    }
  }

  if (agreement == Agreement::DisagreedUnreported) {
    skipChecker.RecordPPSend(serialNumber, std::nullopt);
    return;
  }
  if (agreement != Agreement::Disagreed) return;

  record.SetAgreement(client.GetAgreement());
  const std::string document = record.ToText();
  // What is wrong with it is noted for support. The server decides what it takes.
  if (std::string findings; !PPAInformation::ValidateXml(document, findings)) {
    ZT_TRACE(Warning, BeginningOfFindings(findings));
  }
  if (options.showResult) {
    if (!confirm_(document)) {
      ZT_TRACE(Information, "cancel sending...");
      return;
    }
    ZT_TRACE(Information, "sending accepted...");
  }
  ServerAnswer answer;
  if (client.PostSBX(document, answer)) {
    ZT_TRACE(Information, "send sucessfully...");
    skipChecker.RecordPPSend(serialNumber, std::nullopt);
  } else {
    ZT_TRACE(Information, "failed to send...");
  }
}

}  // namespace zt
