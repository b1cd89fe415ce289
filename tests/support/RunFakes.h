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
#include "ZOLTInformation.h"

namespace zt {

// Calls are the operations that a run asked of its fakes, in order: "WaitForJobs(30)".
using Calls = std::vector<std::string>;

// The fakes of the interfaces that the runs stand on. Their public members are what they answer; a text or number that
// is not there makes the operation fail.

class FakeDataProvider : public IZOLTDataProvider {
 public:
  explicit FakeDataProvider(Calls& calls) : calls_(calls) {}

  bool opens = true;
  std::optional<std::string> serialNumber = "SN1";
  std::optional<std::string> modelName = "Model 1";
  std::optional<std::string> countryIndex = "24";
  std::optional<std::string> hostVersion = "1.2";
  std::optional<ProtectionState> protectionState = ProtectionState::None;
  std::optional<std::uint32_t> tonerLife = 0;
  std::uint32_t changeCount = 0;
  bool collects = true;
  bool memory = true;
  bool switchesProtection = true;
  bool jobsPending = false;
  std::vector<bool> waits = {true, true};  // results of WaitForJobs, one after the other

  bool Initialize(bool checkSupport) override {
    calls_.push_back(checkSupport ? "Initialize(1)" : "Initialize(0)");
    return opens;
  }
  bool GetSerialNumber(std::string& text) override { return Answer("GetSerialNumber", serialNumber, text); }
  std::string GetPrinterAddress() const override { return "10.0.0.1"; }
  bool WaitForJobs(int maximumPolls, bool& pending) override {
    calls_.push_back("WaitForJobs(" + std::to_string(maximumPolls) + ")");
    pending = jobsPending;
    return waits.at(wait_++);
  }
  bool CollectZOLT(ZOLTInformation& record) override {
    calls_.push_back("CollectZOLT");
    if (!memory) throw std::bad_alloc();
    if (collects) record.SetModelName("Model 1");
    return collects;
  }
  // The record stays empty: what it holds is known to its own folder only.
  bool CollectSBX(PPAInformation&) override {
    calls_.push_back("CollectSBX");
    return collects;
  }
  bool CheckSBXSupport(ProtectionState* state) override { return Answer("CheckSBXSupport", protectionState, *state); }
  std::wstring GetQueueName() const override { return L"Queue"; }
  bool SendRawToQueue(const char*) override { return false; }
  bool SetProtection(bool on) override {
    calls_.push_back(on ? "SetProtection(1)" : "SetProtection(0)");
    return switchesProtection;
  }
  bool GetModelName(std::string& text) override { return Answer("GetModelName", modelName, text); }
  std::string GetSBXDocument() const override { return {}; }
  bool GetTonerLife(std::uint32_t* life, std::uint32_t* count) override {
    *count = changeCount;
    return Answer("GetTonerLife", tonerLife, *life);
  }
  bool GetHostVersion(ReportRecord& record) override {
    std::string text;
    if (!Answer("GetHostVersion", hostVersion, text)) return false;
    record.SetHostVersion(text);
    return true;
  }
  bool GetCountryIndex(std::string& text) override { return Answer("GetCountryIndex", countryIndex, text); }
  bool ExtendedIDContains(std::string_view) override { return false; }

 private:
  template <class Value>
  bool Answer(const char* call, const std::optional<Value>& answer, Value& output) {
    calls_.push_back(call);
    if (answer) output = *answer;
    return answer.has_value();
  }

  Calls& calls_;
  std::size_t wait_ = 0;
};

class FakeReportResult : public IZOLTReportResult {
 public:
  explicit FakeReportResult(Calls& calls) : calls_(calls) {}

  using Fill = std::function<void(ServerAnswer&)>;
  bool checks = true;
  Fill checkAnswer;
  bool posts = true;
  Fill postAnswer;
  bool agreement = false;
  std::vector<std::string> posted;

  bool CheckDate(std::string_view serialNumber, ServerAnswer& answer) override {
    return Exchange("CheckDate(" + std::string(serialNumber) + ")", checks, checkAnswer, answer);
  }
  bool CheckSBX(std::string_view modelName, ServerAnswer& answer) override {
    return Exchange("CheckSBX(" + std::string(modelName) + ")", checks, checkAnswer, answer);
  }
  bool PostZOLT(std::string_view document, ServerAnswer& answer) override {
    posted.emplace_back(document);
    return Exchange("PostZOLT", posts, postAnswer, answer);
  }
  bool PostSBX(std::string_view document, ServerAnswer& answer) override {
    posted.emplace_back(document);
    return Exchange("PostSBX", posts, postAnswer, answer);
  }
  bool GetAgreement() const override { return agreement; }

 private:
  bool Exchange(std::string call, bool succeeds, const Fill& fill, ServerAnswer& answer) {
    calls_.push_back(std::move(call));
    answer.Clear();
    if (fill) fill(answer);
    return succeeds;
  }

  Calls& calls_;
};

class FakeSkipChecker : public IZOLTSkipChecker {
 public:
  explicit FakeSkipChecker(Calls& calls) : calls_(calls) {}

  bool ioFailIsNear = false;
  bool serverFailIsNear = false;
  bool sendIsNear = false;        // by the history
  bool serverDateIsNear = false;  // by a given date
  bool ppSendIsNear = false;
  bool changeCountChanged = true;
  std::optional<ServerPolicy> policy;  // what is stored

  bool IsLastIOFailNear(std::string_view id) override { return Called("IsLastIOFailNear", id, {}, ioFailIsNear); }
  bool IsLastSendNear(std::string_view id, OptionalTimeText time) override {
    return Called("IsLastSendNear", id, time, time ? serverDateIsNear : sendIsNear);
  }
  bool IsLastServerFailNear() override { return Called("IsLastServerFailNear", "", {}, serverFailIsNear); }
  void RecordIOFail(std::string_view id) override { Called("RecordIOFail", id); }
  void RecordServerFail() override { Called("RecordServerFail", ""); }
  void RecordSendSuccess(std::string_view id, OptionalTimeText time) override { Called("RecordSendSuccess", id, time); }
  void SetSendInterval(int days) override { Called("SetSendInterval", std::to_string(days)); }
  void SetPPNormalInterval(int days) override { Called("SetPPNormalInterval", std::to_string(days)); }
  void SetZOLTEnabled(bool enabled) override { Called("SetZOLTEnabled", enabled ? "1" : "0"); }
  bool GetZOLTEnabled(bool&) override { return false; }
  void SetPPAEnabled(bool enabled) override { Called("SetPPAEnabled", enabled ? "1" : "0"); }
  bool GetPPAEnabled(bool&) override { return false; }
  bool IsLastPPSendNear(std::string_view id, OptionalTimeText time) override {
    return Called("IsLastPPSendNear", id, time, ppSendIsNear);
  }
  void RecordPPSend(std::string_view id, OptionalTimeText time) override { Called("RecordPPSend", id, time); }
  bool IsLastPPNormalNear(std::string_view, OptionalTimeText) override { return false; }
  void RecordPPNormal(std::string_view id, OptionalTimeText time) override { Called("RecordPPNormal", id, time); }
  bool GetServerPolicy(ServerPolicy& output) override {
    output = policy.value_or(ServerPolicy());
    return policy.has_value();
  }
  void StoreServerPolicy(const ServerPolicy& stored) override {
    policy = stored;
    Called("StoreServerPolicy", std::to_string(stored.transmissionDuration) + "|" + stored.nsLanguageCode + "|" +
                                    std::to_string(stored.tonerMaxLife));
  }
  void RecordTonerLife(std::string_view id, std::uint32_t life) override {
    Called("RecordTonerLife", std::string(id) + "," + std::to_string(life));
  }
  bool UpdateTonerChangeCount(std::string_view id, std::uint32_t count) override {
    return Called("UpdateTonerChangeCount", std::string(id) + "," + std::to_string(count), {}, changeCountChanged);
  }
  int GetSendInterval(int fallback) override { return fallback; }
  int GetPPNormalInterval(int fallback) override { return fallback; }
  bool IsTonerLifeExceeded(std::string_view) override { return false; }

 private:
  bool Called(const char* operation, std::string_view id, OptionalTimeText time = {}, bool result = false) {
    calls_.push_back(std::string(operation) + "(" + std::string(id) + (time ? "," + std::string(*time) : "") + ")");
    return result;
  }

  Calls& calls_;
};

}  // namespace zt
