#include "KVFPrinterUSB.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "Hex.h"
#include "PPAInformation.h"
#include "TraceCapture.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

using testing::ElementsAre;

using Lines = std::vector<std::string>;
using Answer = std::optional<std::string>;  // none: the step fails
using Answers = std::vector<Answer>;        // one after the other; the last one stays

// FakeUSBPrinter is a USB printer, with the computer that it is plugged into, as a script of what each step leads to.
// Without a lock in it, there is no device monitor.
struct FakeUSBPrinter {
  std::map<std::string, Answers> script;
  Lines log;  // the steps that were made
  std::uint32_t slept = 0;

  Answer Do(const std::string& step) {
    log.push_back(step);
    Answers& answers = script[step];
    if (answers.empty()) return std::nullopt;
    const Answer answer = answers.front();
    if (answers.size() > 1) answers.erase(answers.begin());
    return answer;
  }
  std::optional<std::size_t> Fill(const std::string& step, std::span<std::uint8_t> room) {
    const Answer answer = Do(step);
    if (!answer || answer->size() > room.size()) return std::nullopt;
    std::ranges::copy(*answer, room.begin());
    return answer->size();
  }
  USBServices Services();
};

// OpenPrinter is what one opening gives: the requests, or the pipes.
class OpenPrinter : public USBControl, public USBBulkIO {
 public:
  explicit OpenPrinter(FakeUSBPrinter& printer) : printer_(printer) {}
  ~OpenPrinter() override { printer_.log.push_back("close"); }

  std::optional<std::size_t> Request(const USBRequest& request, std::span<std::uint8_t> reply) override {
    std::string step = "request ";
    for (const std::uint8_t byte : request.bytes) AppendHex(step, byte);
    return printer_.Fill(reply.size() == request.replySize ? step : "request without room", reply);
  }
  std::optional<std::size_t> QueryDeviceID(std::span<std::uint8_t> reply) override {
    return printer_.Fill("device id", reply);
  }

 private:
  bool Write(std::span<const std::uint8_t> bytes) override {
    return printer_.Do("write " + std::to_string(bytes[11])).has_value();
  }
  bool Read(std::span<std::uint8_t> bytes) override {
    return printer_.Fill("read " + std::to_string(bytes.size()), bytes) == bytes.size();
  }

  FakeUSBPrinter& printer_;
};

USBServices FakeUSBPrinter::Services() {
  const DeviceMonitor monitor = {
      .acquire = [this](std::uint8_t port) { return Do("acquire " + std::to_string(port)).has_value(); },
      .release = [this](std::uint8_t port) { return Do("release " + std::to_string(port)).has_value(); }};
  const auto open = [this](const char* step) { return Do(step) ? std::make_unique<OpenPrinter>(*this) : nullptr; };
  return {
      .openControl = [open](const std::wstring&) { return open("open"); },
      .openBulk = [open](const std::wstring&) { return open("open pipes"); },
      .loadDeviceMonitor = [=, this] { return script.contains("acquire 153") ? std::optional(monitor) : std::nullopt; },
      .countJobs = [this](const std::wstring&) { return std::stoi(Do("jobs").value_or("-1")); },
      .pause = [this](std::uint32_t milliseconds) { slept += milliseconds; }};
}

const std::string kDocument =
    "<root><ZOLT><ProductType>P</ProductType><Count><DevTotalMonoCount>7</DevTotalMonoCount></Count>"
    "<Supplies></Supplies></ZOLT></root>";

// The reply that announces a document of so many bytes.
std::string Announcing(std::uint32_t size) {
  std::string header(12, '\0');
  for (const int shift : {24, 16, 8, 0}) header += static_cast<char>(size >> shift);
  return header;
}

class KVFPrinterUSBTest : public testing::Test {
 protected:
  KVFPrinterUSBTest() {
    device.script = {{"open", {""}},
                     {"open pipes", {""}},
                     {"device id", {"MDL:Velnora PHZ-1;CMD:ZOLT,FWV,CI_12;"}},
                     {"request 490001", {" SN9\r\n"}},
                     {"request 560000", {"V1.2"}},
                     {"write 1", {""}},
                     {"write 2", {""}}};
    Deliver(kDocument);
    Open();
  }

  void Deliver(const std::string& document) {
    device.script["read 16"] = {Announcing(static_cast<std::uint32_t>(document.size()))};
    device.script["read " + std::to_string(document.size())] = {document};
  }

  // Open makes the access to the printer anew.
  HResult Open() {
    printer = std::make_unique<KVFPrinterUSB>(L"\\\\?\\usb#1", device.Services());
    printer->SetQueueName(L"Queue");
    Forget();
    return printer->Open();
  }
  void Forget() {
    trace.lines.clear();
    device.log.clear();
    device.slept = 0;
  }
  std::ptrdiff_t Count(const char* step) const { return std::ranges::count(device.log, step); }

  // Collect reads a fresh record and answers the codes, behind "ok" when it succeeded.
  template <class Record>
  std::string Collect(Record& into, HResult (KVFPrinter::*collect)(Record&, std::string&)) {
    Forget();
    into = {};
    std::string codes;
    return ((*printer.*collect)(into, codes) == HResult::Ok ? "ok" : "") + codes;
  }
  std::string Collect() { return Collect(record, &KVFPrinter::GetZOLTInformation); }
  std::string CollectProtection() { return Collect(protection, &KVFPrinter::GetPPAInformation); }

  FakeUSBPrinter device;
  std::unique_ptr<KVFPrinterUSB> printer;
  ZOLTInformation record;
  PPAInformation protection;
  TraceCapture trace;
};

TEST_F(KVFPrinterUSBTest, Open) {
  const std::string longest = "CMD:ZOLT;CLS:" + std::string(1024 - 13, 'x');  // fills its room
  const std::string extended("CMD:ZOLT,SBXOFF;\0CMD:X;", 23);
  const struct {
    Answers opens;
    Answer deviceID;
    Answer extended;
    Lines traced;
    bool supported;
  } rows[] = {
      {{}, "CMD:ZOLT", {}, {"4 can't get device ID"}, false},
      {{""}, std::nullopt, {}, {"4 can't get device ID"}, false},
      {{""}, "", {}, {"4 can't get device ID"}, false},
      {{""}, longest, extended, {"4 EXT is not supported", "4 MPS not supported"}, true},
      {{""}, "CMD:PJL,EXT", {}, {"4 can't get EXT", "4 MPS not supported"}, false},
      {{"", {}}, "CMD:PJL,EXT", extended, {"4 can't open device path", "4 MPS not supported"}, false},
      {{""}, "CMD:PJL,EXT", extended, {"4 MPS not supported"}, true},
  };
  for (const auto& row : rows) {
    device.script["open"] = row.opens;
    device.script["device id"] = {row.deviceID};
    device.script["request E00100"] = {row.extended};
    EXPECT_EQ(Open() == HResult::Ok, row.traced.back() == "4 MPS not supported");
    EXPECT_EQ(trace.Texts(), row.traced);
    EXPECT_EQ(printer->IsZOLTSupported() == HResult::Ok, row.supported);
  }
  std::string text;
  EXPECT_EQ(printer->GetDeviceID(text), HResult::Ok);
  EXPECT_EQ(text, "CMD:PJL,EXT");
  EXPECT_THAT(device.log, ElementsAre("open", "device id", "close", "open", "request E00100", "close"));  // read once
}

TEST_F(KVFPrinterUSBTest, WakeSequence) {
  const std::string asleep("\0\xAA\xAA\xAA\0\0\0\0", 8);
  const std::tuple<Answers, std::ptrdiff_t, std::ptrdiff_t> rows[] = {
      // replies to the status requests; how many of these, and of wakes, were sent
      {{asleep, asleep, std::string(8, '\x01')}, 3, 2},
      {{asleep}, 6, 6},  // and no more
      {{}, 1, 0}};
  device.script["device id"] = {"CMD:MPS"};
  for (const auto& [replies, statusRequests, wakes] : rows) {
    device.script["request 020000"] = replies;
    EXPECT_EQ(Open(), HResult::Ok);  // whatever the outcome
    EXPECT_EQ(Count("request 020000"), statusRequests);
    EXPECT_EQ(Count("request 990000"), wakes);
    EXPECT_EQ(device.slept, 1000 * wakes);
  }
}

TEST_F(KVFPrinterUSBTest, StatusSuppliesAndCounters) {
  StatusBlock status;
  std::vector<SupplyEntry> supplies;
  std::uint32_t largest = 7;
  std::uint32_t total = 7;
  EXPECT_EQ(printer->GetStatusBlock(status), HResult::NotImplemented);
  EXPECT_EQ(printer->GetPageCounters(largest, total), HResult::NotImplemented);

  device.script["request 020000"] = {"\x01\x02\x03\x04\x05\x06\x07\x08"};
  EXPECT_EQ(printer->GetStatusBlock(status), HResult::Ok);
  EXPECT_TRUE(status.valid && status.bytes[7] == 8);
  EXPECT_EQ(printer->GetSupplyLevels(supplies), HResult::Ok);
  EXPECT_EQ(supplies.size(), 4u);

  device.script["request 430000"] = {std::string(254, '\1'), Announcing(5) + std::string(239, '\0')};
  EXPECT_EQ(printer->GetPageCounters(largest, total), HResult::Fail);
  EXPECT_EQ(std::pair(largest, total), std::pair(7u, 7u));
  EXPECT_EQ(printer->GetPageCounters(largest, total), HResult::Ok);
  EXPECT_EQ(std::pair(largest, total), std::pair(5u, 0u));
}

TEST_F(KVFPrinterUSBTest, SetProtection) {
  const std::string on = "ONxxxxxx";
  const std::string off("OFF\0\0\0\0\0", 8);
  const std::tuple<Answer, Answer, HResult> rows[] = {// the replies to on and off
                                                      {on, off, HResult::Ok},
                                                      {off, on, HResult::Fail},
                                                      {"ON", std::nullopt, HResult::Fail}};
  for (const auto& [toOn, toOff, result] : rows) {
    device.script["request 430100"] = {toOn};
    device.script["request 430200"] = {toOff};
    EXPECT_EQ(printer->SetProtection(true), result);
    EXPECT_EQ(printer->SetProtection(false), result);
  }
}

TEST_F(KVFPrinterUSBTest, Record) {
  EXPECT_EQ(Collect(), "ok");
  EXPECT_THAT(device.log, ElementsAre("jobs", "open pipes", "write 1", "read 16", "write 2",
                                      "read " + std::to_string(kDocument.size()), "close", "open", "request 490001",
                                      "close", "open", "request 560000", "close"));
  EXPECT_EQ(record.DeviceValues(), (ElementValues{{"CountryIndex", "12"},
                                                  {"GeneralSerialNumber", "SN9"},
                                                  {"MDL", "Velnora PHZ-1"},
                                                  {"ProductType", "P"},
                                                  {"SystemFirmwareVersion", "V1.2"}}));
  EXPECT_EQ(record.CounterValues(), (ElementValues{{"DevTotalMonoCount", "7"}}));
  EXPECT_FALSE(record.IsDocumentMode());

  device.script["device id"] = {"MDL:Velnora PHZ-1;CMD:ZOLT,FWV,RDS"};
  Open();
  printer->SetQueueName(L"");
  EXPECT_EQ(Collect(), "ok");
  EXPECT_TRUE(record.IsDocumentMode());
  EXPECT_EQ(record.DeviceValues().at("ProductType"), "PHZ");
  EXPECT_EQ(Count("jobs"), 0);  // a queue without a name has none
  std::string codes;
  EXPECT_EQ(printer->GetZOLTInformation(record, codes), HResult::Ok);
  EXPECT_EQ(Count("write 1"), 1);  // the record holds the document already
}

TEST_F(KVFPrinterUSBTest, BrokenExchanges) {
  const std::tuple<const char*, Answers, std::size_t> rows[] = {
      // the step that fails; how many were made, counting the jobs, opening and closing included
      {"write 1", {}, 4},
      {"read 16", {}, 5},
      {"read 16", {Announcing(0)}, 5},
      {"read 16", {Announcing(0xFFFFFFFF)}, 5},
      {"read 16", {Announcing(1024 * 1024 + 1)}, 5},
      {"write 2", {}, 6},
      {"read 5", {"<a/>"}, 7},
  };
  Deliver("<aa/>");
  const auto usual = device.script;
  Lines traced;
  for (const auto& [step, answers, steps] : rows) {
    device.script = usual;
    device.script[step] = answers;
    EXPECT_EQ(Collect(), "/xml error");
    EXPECT_EQ(device.log.size(), steps) << testing::PrintToString(device.log);
    std::ranges::copy(trace.Texts(), std::back_inserter(traced));
  }
  EXPECT_THAT(traced, ElementsAre("3 usb document too long : 4294967295", "3 usb document too long : 1048577"));
}

// A printer with every fault at once, mended one by one.
TEST_F(KVFPrinterUSBTest, CodesInTheOrderOfTheFailures) {
  const std::tuple<const char*, const char*, Answer> rows[] = {
      // codes, and the step that is mended by an answer
      {"", "device id", "CMD:ZOLT"},  // a printer without support is not asked
      {"/job pending", "acquire 153", std::nullopt},
      {"/lock failed", "acquire 153", ""},         // the lock decides, not the jobs
      {"/open fail/xml error", "open pipes", ""},  // it goes on with an empty text
      {"/xml errorno document", "read 11", "<r>1234</r>"},
      {"/modelname err", "device id", "CMD:ZOLT;MDL:M"},
      {"/serialno err", "request 490001", "SN9"},
      {"/fwv err", "request 560000", "V1"},  // it is not announced
      {"/fwv err", "device id", "CMD:ZOLT,FWV;MDL:M"},
      {"/no ZOLT el/no Count el", "", ""},
  };
  device.script = {{"open", {""}}, {"device id", {"CMD:FWV"}}, {"jobs", {"1"}}, {"release 153", {""}}};
  device.script["write 1"] = device.script["write 2"] = {""};
  Deliver("no document");
  for (const auto& [codes, step, answer] : rows) {
    Open();
    EXPECT_EQ(Collect(), codes);
    EXPECT_EQ(device.log.empty(), *codes == '\0');
    device.script[step] = {answer};
  }
}

TEST_F(KVFPrinterUSBTest, LockIsHeldDuringTheExchangeAndReleasedUntilThatSucceeds) {
  device.script["acquire 153"] = {""};
  device.script["release 153"] = {std::nullopt, ""};
  device.script["write 1"] = {};
  EXPECT_EQ(Collect(), "/xml error");
  EXPECT_THAT(device.log, ElementsAre("acquire 153", "open pipes", "write 1", "close", "release 153", "release 153"));
  EXPECT_EQ(device.slept, 500u);
  device.script["release 153"] = {};
  Collect();
  EXPECT_EQ(Count("release 153"), 101);
}

TEST_F(KVFPrinterUSBTest, ProtectionDocument) {
  device.script["write 2"] = {std::nullopt, ""};
  EXPECT_EQ(CollectProtection(), "ok");
  EXPECT_EQ(trace.Texts(), (Lines{"4 [ZT] more try to get xml.: 0 ..", "4 [ZT] more try to get xml.: 1 ..",
                                  "4 [ZT] Success to get xml..."}));
  EXPECT_EQ(device.slept, 500u);

  const std::tuple<const char*, Answers, const char*, const char*> rows[] = {
      {"write 2", {}, "/xml error", "4 [ZT] more try to get xml.: 2 .."},
      {"open pipes", {}, "/open fail", "4 [ZT] getPPAInformation usb open failed."},
      {"jobs", {"1"}, "/job pending", "4 [ZT] job pending"},
      {"acquire 153", {}, "/lock failed", "4 [ZT] locked failed"},
  };
  for (const auto& [step, answers, codes, traced] : rows) {
    device.script[step] = answers;
    EXPECT_EQ(CollectProtection(), codes);
    EXPECT_EQ(trace.Texts().back(), traced);
    // Between the exchanges, not after the last.
    EXPECT_EQ(device.slept, std::string_view(step) == "write 2" ? 1000u : 0u);
  }
  EXPECT_THAT(trace.Texts(), ElementsAre("4 Failed to acquire device mon!!!", "4 [ZT] locked failed"));
}

}  // namespace
}  // namespace zt
