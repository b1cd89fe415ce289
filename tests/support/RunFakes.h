#pragma once

#include <cstdint>
#include <functional>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "IZOLTDataProvider.h"
#include "IZOLTReportResult.h"
#include "IZOLTSkipChecker.h"
#include "ProtectionState.h"
#include "TextBuilder.h"
#include "ZOLTInformation.h"

namespace zt {

// RunWorld plays all that a run deals with: the printer, the server, the history and, by its confirmation, the user. It
// notes what is asked of it; its members are what it answers.
class RunWorld : public IZOLTDataProvider, public IZOLTReportResult, public IZOLTSkipChecker {
 public:
  std::string calls;                   // in order, each behind a blank: " WaitForJobs(30) Initialize(1)"
  std::string odd;                     // of these, those that answer the opposite of what they usually do
  std::vector<std::string> documents;  // shown or posted

  std::string countryIndex = "1";
  ProtectionState protectionState = ProtectionState::None;
  std::uint32_t tonerLife = 200;
  bool jobsPending = false;
  bool memory = true;
  std::function<void(ServerAnswer&)> checkAnswer = [](ServerAnswer&) {};
  std::function<void(ServerAnswer&)> postAnswer = [](ServerAnswer&) {};
  bool agreement = false;
  std::optional<ServerPolicy> policy;  // as stored
  bool showResult = false;

  bool Confirm(const std::string& document) {
    documents.push_back(document);
    return Called("Confirm");
  }

  // The printer
  bool Initialize(bool checkSupport) override { return Called("Initialize(", checkSupport ? "1)" : "0)"); }
  bool GetSerialNumber(std::string& text) override { return Answer(std::string("SN1"), text, "GetSerialNumber"); }
  std::string GetPrinterAddress() const override { return "P1"; }
  bool WaitForJobs(int maximumPolls, bool& pending) override {
    return Answer(jobsPending, pending, "WaitForJobs(", maximumPolls, ")");
  }
  bool CollectZOLT(ZOLTInformation& record) override {
    if (!memory) throw std::bad_alloc();
    record.SetModelName("Model1");
    return Called("CollectZOLT");
  }
  bool CollectSBX(PPAInformation&) override { return Called("CollectSBX"); }
  bool CheckSBXSupport(ProtectionState* state) override { return Answer(protectionState, *state, "CheckSBXSupport"); }
  std::wstring GetQueueName() const override { return L"Queue"; }
  bool SendRawToQueue(const char*) override { return false; }
  bool SetProtection(bool on) override { return Called("SetProtection(", on ? "1)" : "0)"); }
  bool GetModelName(std::string& text) override { return Answer(std::string("Model1"), text, "GetModelName"); }
  std::string GetSBXDocument() const override { return {}; }
  bool GetTonerLife(std::uint32_t* life, std::uint32_t* count) override {
    *count = 5;
    return Answer(tonerLife, *life, "GetTonerLife");
  }
  bool GetHostVersion(ReportRecord& record) override {
    record.SetHostVersion("1.2");
    return Called("GetHostVersion");
  }
  bool GetCountryIndex(std::string& text) override { return Answer(countryIndex, text, "GetCountryIndex"); }
  bool ExtendedIDContains(std::string_view) override { return false; }

  // The server
  bool CheckDate(std::string_view serial, ServerAnswer& answer) override {
    checkAnswer(answer);
    return Called("CheckDate(", serial, ")");
  }
  bool CheckSBX(std::string_view model, ServerAnswer& answer) override {
    checkAnswer(answer);
    return Called("CheckSBX(", model, ")");
  }
  bool PostZOLT(std::string_view document, ServerAnswer& answer) override {
    documents.emplace_back(document);
    postAnswer(answer);
    return Called("PostZOLT");
  }
  bool PostSBX(std::string_view document, ServerAnswer&) override {
    documents.emplace_back(document);
    return Called("PostSBX");
  }
  bool GetAgreement() const override { return agreement; }

  // The history
  bool IsLastIOFailNear(std::string_view id) override { return !Called("IsLastIOFailNear(", id, ")"); }
  bool IsLastSendNear(std::string_view id, OptionalTimeText time) override {
    return !Timed("IsLastSendNear(", id, time);
  }
  bool IsLastServerFailNear() override { return !Called("IsLastServerFailNear"); }
  void RecordIOFail(std::string_view id) override { Called("RecordIOFail(", id, ")"); }
  void RecordServerFail() override { Called("RecordServerFail"); }
  void RecordSendSuccess(std::string_view id, OptionalTimeText time) override { Timed("RecordSendSuccess(", id, time); }
  void SetSendInterval(int days) override { Called("SetSendInterval(", days, ")"); }
  void SetPPNormalInterval(int days) override { Called("SetPPNormalInterval(", days, ")"); }
  void SetZOLTEnabled(bool enabled) override { Called("SetZOLTEnabled(", enabled ? "1)" : "0)"); }
  bool GetZOLTEnabled(bool&) override { return false; }
  void SetPPAEnabled(bool enabled) override { Called("SetPPAEnabled(", enabled ? "1)" : "0)"); }
  bool GetPPAEnabled(bool&) override { return false; }
  bool IsLastPPSendNear(std::string_view id, OptionalTimeText time) override {
    return !Timed("IsLastPPSendNear(", id, time);
  }
  void RecordPPSend(std::string_view id, OptionalTimeText time) override { Timed("RecordPPSend(", id, time); }
  bool IsLastPPNormalNear(std::string_view, OptionalTimeText) override { return false; }
  void RecordPPNormal(std::string_view, OptionalTimeText) override {}
  bool GetServerPolicy(ServerPolicy& output) override {
    output = policy.value_or(ServerPolicy());
    return policy.has_value();
  }
  void StoreServerPolicy(const ServerPolicy& stored) override {
    Called("StoreServerPolicy(", stored.transmissionDuration, "|", stored.nsLanguageCode, "|", stored.tonerMaxLife,
           ")");
  }
  void RecordTonerLife(std::string_view id, std::uint32_t life) override {
    Called("RecordTonerLife(", id, life == tonerLife ? ")" : ",another)");
  }
  bool UpdateTonerChangeCount(std::string_view id, std::uint32_t count) override {
    return Called("UpdateTonerChangeCount(", id, ",", count, ")");
  }
  int GetSendInterval(int fallback) override { return fallback; }
  int GetPPNormalInterval(int fallback) override { return fallback; }
  bool IsTonerLifeExceeded(std::string_view) override { return false; }

 private:
  // Notes the call. True unless it is an odd one.
  template <class... Parts>
  bool Called(const Parts&... parts) {
    const std::string call = (TextBuilder() << ... << parts).Take();
    calls += " " + call;
    return (" " + odd + " ").find(" " + call + " ") == std::string::npos;
  }

  bool Timed(const char* operation, std::string_view id, OptionalTimeText time) {
    return Called(operation, id, time ? "," : "", time.value_or(""), ")");
  }

  template <class Value, class... Parts>
  bool Answer(const Value& answer, Value& output, const Parts&... parts) {
    const bool answered = Called(parts...);
    if (answered) output = answer;
    return answered;
  }
};

}  // namespace zt
