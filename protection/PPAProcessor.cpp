#include "PPAProcessor.h"

#include <new>

#include "CodePage.h"
#include "Codes.h"
#include "PPAInformation.h"
#include "ProtectionState.h"
#include "ReportXml.h"
#include "Trace.h"

namespace zt {
namespace {

constexpr std::string_view kCollectionFailed = "[ZT] Failed to get info from device. Will retry at next week. bye~";

// Parties are those that a run deals with, besides the user.
struct Parties {
  IZOLTDataProvider& provider;
  IZOLTReportResult& client;
  IZOLTSkipChecker& skipChecker;
};

// Facts are what the printer tells, and what is stored for it, before anybody is asked.
struct Facts {
  ProtectionState state = ProtectionState::None;
  std::uint32_t tonerLife = 0;
  std::uint32_t changeCount = 0;
  std::string countryIndex;
  ServerPolicy policy;  // as stored, or the defaults
  bool policyStored = false;
};

// Examine opens the printer and reads the facts; nothing, with a line that says why, ends the run.
std::optional<Facts> Examine(IZOLTDataProvider& provider, IZOLTSkipChecker& skipChecker) {
  Facts facts;
  if (!provider.Initialize(true) || !provider.CheckSBXSupport(&facts.state)) {
    constexpr std::string_view kMessage = "[ZT] failed to check SBX  bye~";
    ZT_TRACE(Warning, kMessage);
    WriteDebug(kMessage);
    return std::nullopt;
  }
  if (!IsProtectable(facts.state)) {
    ZT_TRACE(Warning, "[ZT] device is not include sbx string..");
    return std::nullopt;
  }
  if (!provider.GetTonerLife(&facts.tonerLife, &facts.changeCount)) {
    ZT_TRACE(Warning, "[UA] failed to get toner life info~");
    return std::nullopt;
  }
  skipChecker.RecordTonerLife(ToNarrow(provider.GetQueueName()), facts.tonerLife);
  facts.policyStored = skipChecker.GetServerPolicy(facts.policy);
  if (!provider.GetCountryIndex(facts.countryIndex) || facts.countryIndex.empty()) {
    WriteDebug("[ZT] device is not supported countryIndex");
    return std::nullopt;
  }
  return facts;
}

// User asks the user of the printer's queue.
struct User {
  const ShowAgreement& show;
  std::wstring queue;
  std::wstring language;
  bool countryIs52;

  Agreement Ask() const { return show(queue, language, countryIs52); }
};

// AskForProtected settles the agreement of a printer whose protection is on, before the server is asked: the user is,
// where the toner life is past the limit, and a refusal switches the protection off. Of a printer whose protection is
// off nobody is asked yet.
Agreement AskForProtected(const Facts& facts, IZOLTDataProvider& provider, const User& user) {
  Agreement agreement = Agreement::DisagreedUnreported;  // until somebody is asked
  const Question question = QuestionForProtectedPrinter(facts.state, facts.tonerLife, facts.policy, facts.countryIndex);
  if (question == Question::Ask) agreement = user.Ask();
  if (question != Question::None && IsRefused(agreement)) provider.SetProtection(false);
  return agreement;
}

// AskServer fetches the limits of the model and stores them. False when the server has ended the service. A server that
// cannot be reached leaves the policy in force.
bool AskServer(const Parties& parties, ServerPolicy& policy) {
  std::string modelName;
  parties.provider.GetModelName(modelName);  // without a name the server answers the limit of all models
  ServerAnswer answer;
  if (!parties.client.CheckSBX(modelName, answer)) return true;
  if (answer.IsNoMoreService()) {
    parties.skipChecker.SetPPAEnabled(false);
    ZT_TRACE(Information, "ppa service stopped. bye~");
    return false;
  }
  policy = MergePolicy(policy, answer);
  parties.skipChecker.StoreServerPolicy(policy);
  if (const std::optional<int> days = answer.GetPPNormalIntervalDays()) parties.skipChecker.SetPPNormalInterval(*days);
  return true;
}

void ReportNoLimit(std::uint32_t tonerLife) {
  WriteDebug(
      (TextBuilder() << "[ZT] Current SBXLevel is not limitted = " << static_cast<std::int32_t>(tonerLife)).Take());
}

// SerialNumberIfDue decides whether data is to be collected, and reads the serial number on the way. Nothing when it is
// not: the server has ended the service, the limit is not reached, nobody has refused, the printer does not say who it
// is, or the last report is near.
std::optional<std::string> SerialNumberIfDue(const Facts& facts, Agreement agreement, const Parties& parties) {
  ServerPolicy policy = facts.policy;
  const bool askedFirst = IsServerAskedFirst(facts.policyStored, facts.state);
  if (askedFirst && !AskServer(parties, policy)) return std::nullopt;
  if (IsTonerFresh(facts.tonerLife)) {
    ReportNoLimit(facts.tonerLife);
    return std::nullopt;
  }
  if (!IsReportDue(facts.state, agreement)) return std::nullopt;

  // Printing goes first, but a queue that never drains or cannot be counted does not hold up the report.
  bool jobsPending = false;
  parties.provider.WaitForJobs(IZOLTDataProvider::kPollsBeforeReading, jobsPending);
  std::string serialNumber;
  if (!parties.provider.GetSerialNumber(serialNumber)) {
    ZT_TRACE(Warning, "[UA] failed to get serial nubmer~");
    return std::nullopt;
  }
  if (!parties.skipChecker.UpdateTonerChangeCount(serialNumber, facts.changeCount) &&
      parties.skipChecker.IsLastPPSendNear(serialNumber, std::nullopt)) {
    ZT_TRACE(Warning, "[UA] CanSkipByLastPPSendTime - skip send success local. bye~");
    return std::nullopt;
  }
  if (!askedFirst && !AskServer(parties, policy)) return std::nullopt;
  if (IsBelowLimit(facts.tonerLife, policy)) {
    ReportNoLimit(facts.tonerLife);
    return std::nullopt;
  }
  return serialNumber;
}

// Collect fills the record from the printer.
bool Collect(const Facts& facts, IZOLTDataProvider& provider, PPAInformation& record) {
  bool jobsPending = false;
  provider.WaitForJobs(IZOLTDataProvider::kPollsBeforeCollecting, jobsPending);
  if (!provider.CollectSBX(record)) {
    WriteDebug(kCollectionFailed);
    return false;
  }
  if (!provider.GetHostVersion(record)) WriteDebug("[ZT] Failed to get host version");
  record.SetSBX(std::to_string(facts.tonerLife));
  return true;
}

// AskForUnprotected asks the user of a printer whose protection is off, now that the data is there; consent switches it
// on.
Agreement AskForUnprotected(IZOLTDataProvider& provider, const User& user) {
  const Agreement agreement = user.Ask();
  const bool agreed = agreement == Agreement::Agreed;
  WriteDebug(agreed ? "[ZT] Product protection agree value = agree" : "[ZT] Product protection agree value = disagree");
  if (agreed) {
    ZT_TRACE(Information, "[ZT] refill - SendCommandViaPrinterQueue (ON).");
    provider.SetProtection(true);
  }
  return agreement;
}

// DocumentOf makes the document that is posted; nothing when a printer's document has used the memory up, which ends as
// a collection that failed.
std::optional<std::string> DocumentOf(PPAInformation& record, bool agreement) {
  try {
    record.SetAgreement(agreement);
    std::string document = record.ToText();
    // What is wrong with it is noted for support. The server decides what it takes.
    if (Codes codes; !PPAInformation::ValidateXml(document, codes)) ZT_TRACE(Warning, BeginningOf(codes));
    return document;
  } catch (const std::bad_alloc&) {
    ZT_TRACE(Warning, "no memory for the report");
    WriteDebug(kCollectionFailed);
    return std::nullopt;
  }
}

bool IsConfirmed(const ConfirmSend& confirm, const std::string& document) {
  const bool confirmed = confirm(document);
  ZT_TRACE(Information, (confirmed ? "sending accepted..." : "cancel sending..."));
  return confirmed;
}

}  // namespace

// A printer whose protection is on: the user is asked first, and only a refusal leads on. One whose protection is off:
// the user is asked last, when all that is to be reported is there.
void PPAProcessor::Run(const PPARunOptions& options, IZOLTDataProvider& provider, IZOLTReportResult& client,
                       IZOLTSkipChecker& skipChecker) const {
  ZT_TRACE(Information, "[ZT] refill  -ZOLT_SBX_COLLECTING_MODE start...");
  const std::optional<Facts> facts = Examine(provider, skipChecker);
  if (!facts) return;
  const User user{showAgreement_, provider.GetQueueName(), options.language, facts->countryIndex == "52"};
  Agreement agreement = AskForProtected(*facts, provider, user);

  const std::optional<std::string> serialNumber = SerialNumberIfDue(*facts, agreement, {provider, client, skipChecker});
  if (!serialNumber) return;

  PPAInformation record;
  if (!Collect(*facts, provider, record)) return;
  if (facts->state == ProtectionState::Off) agreement = AskForUnprotected(provider, user);
  if (agreement == Agreement::DisagreedUnreported) skipChecker.RecordPPSend(*serialNumber, std::nullopt);
  if (agreement != Agreement::Disagreed) return;

  const std::optional<std::string> document = DocumentOf(record, client.GetAgreement());
  if (!document || (options.showResult && !IsConfirmed(confirm_, *document))) return;
  if (ServerAnswer answer; client.PostSBX(*document, answer)) {
    ZT_TRACE(Information, "send sucessfully...");
    skipChecker.RecordPPSend(*serialNumber, std::nullopt);
  } else {
    ZT_TRACE(Information, "failed to send...");
  }
}

}  // namespace zt
