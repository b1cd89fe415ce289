#include "KVFPrinterUSB.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <map>

#include "Hex.h"
#include "PPAInformation.h"
#include "TraceCapture.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

using Lines = std::vector<std::string>;
using Answer = std::optional<std::string>;  // none: the call fails
using Answers = std::deque<Answer>;         // one after the other; then each call fails

Answers Always(Answer answer) { return Answers(99, answer); }

// FakeUSBPrinter is a USB printer with the computer that it is plugged into, as a test scripts them.
struct FakeUSBPrinter {
  int opens = 99;  // that succeed
  bool opensPipes = true;
  Answer deviceID;
  std::map<std::array<std::uint8_t, 3>, Answers> replies;  // by request
  Answers reads;
  int writes = 99;               // that succeed
  std::optional<bool> acquires;  // what the device monitor answers; nothing: there is none
  int failingReleases = 0;
  std::int32_t jobs = 0;
  Lines log;
  std::uint32_t slept = 0;

  bool Did(std::string what, bool result = true) {
    log.push_back(std::move(what));
    return result;
  }
  USBServices Services();
};

// OpenPrinter is what one opening gives: the requests, or the pipes.
class OpenPrinter : public USBControl, public USBBulkIO {
 public:
  explicit OpenPrinter(FakeUSBPrinter& printer) : printer_(printer) {}
  ~OpenPrinter() override { printer_.Did("close"); }

  std::optional<std::size_t> Request(const USBRequest& request, std::span<std::uint8_t> reply) override {
    std::string line = "request ";
    for (const std::uint8_t byte : request.bytes) AppendHex(line, byte);
    printer_.Did(line);
    return reply.size() == request.replySize ? Fill(reply, printer_.replies[request.bytes]) : std::nullopt;
  }
  std::optional<std::size_t> QueryDeviceID(std::span<std::uint8_t> reply) override {
    printer_.Did("device id");
    Answers once = {printer_.deviceID};
    return Fill(reply, once);
  }

 private:
  bool Write(std::span<const std::uint8_t> bytes) override {
    return printer_.Did("write step " + std::to_string(bytes[11]), printer_.writes-- > 0);
  }
  bool Read(std::span<std::uint8_t> bytes) override {
    printer_.Did("read " + std::to_string(bytes.size()));
    return Fill(bytes, printer_.reads) == bytes.size();
  }
  static std::optional<std::size_t> Fill(std::span<std::uint8_t> room, Answers& answers) {
    if (answers.empty()) return std::nullopt;
    const Answer answer = std::move(answers.front());
    answers.pop_front();
    if (!answer || answer->size() > room.size()) return std::nullopt;
    std::ranges::copy(*answer, room.begin());
    return answer->size();
  }

  FakeUSBPrinter& printer_;
};

USBServices FakeUSBPrinter::Services() {
  const DeviceMonitor monitor = {
      .acquire = [this](std::uint8_t port) { return Did("acquire " + std::to_string(port), *acquires); },
      .release = [this](std::uint8_t port) { return Did("release " + std::to_string(port), failingReleases-- <= 0); }};
  return {
      .openControl =
          [this](const std::wstring&) { return opens-- > 0 ? std::make_unique<OpenPrinter>(*this) : nullptr; },
      .openBulk = [this](const std::wstring&) { return opensPipes ? std::make_unique<OpenPrinter>(*this) : nullptr; },
      .loadDeviceMonitor = [this, monitor] { return acquires ? std::optional(monitor) : std::nullopt; },
      .countJobs = [this](const std::wstring&) { return Did("count jobs"), jobs; },
      .pause = [this](std::uint32_t milliseconds) { slept += milliseconds; }};
}

const std::string kDocument =
    "<root><ZOLT><ProductType>P</ProductType><Count><DevTotalMonoCount>7</DevTotalMonoCount></Count>"
    "<Supplies></Supplies></ZOLT></root>";

// The two reads of an exchange that delivers the document.
Answers Reads(const std::string& document) {
  return {std::string(15, '\0') + static_cast<char>(document.size()), document};
}

class KVFPrinterUSBTest : public testing::Test {
 protected:
  KVFPrinterUSBTest() {
    device.deviceID = "MDL:Velnora PHZ-1;CMD:ZOLT,FWV,CI_12;";
    device.replies[kUSBSerialNumber.bytes] = Always(" SN9\r\n");
    device.replies[kUSBFirmwareVersion.bytes] = Always("V1.2");
  }

  // Open makes the access to the printer anew, and forgets what was done for it.
  HResult Open() {
    printer = std::make_unique<KVFPrinterUSB>(L"\\\\?\\usb#1", device.Services());
    printer->SetQueueName(L"Queue");
    trace.lines.clear();
    const HResult result = printer->Open();
    opening = std::exchange(device.log, {});
    return result;
  }

  // Both collect into a fresh record and answer the codes, behind "ok" when it succeeded.
  std::string Collect() {
    record = {};
    device.log.clear();
    std::string codes;
    return (printer->GetZOLTInformation(record, codes) == HResult::Ok ? "ok" : "") + codes;
  }
  std::string CollectProtection() {
    PPAInformation protection;
    trace.lines.clear();
    std::string codes;
    return (printer->GetPPAInformation(protection, codes) == HResult::Ok ? "ok" : "") + codes;
  }

  FakeUSBPrinter device;
  std::unique_ptr<KVFPrinterUSB> printer;
  Lines opening;
  ZOLTInformation record;
  TraceCapture trace;
};

TEST_F(KVFPrinterUSBTest, Open) {
  const std::string longest = "CMD:ZOLT;CLS:" + std::string(1024 - 13, 'x');  // fills its room
  const std::string extended("CMD:ZOLT,SBXOFF;\0CMD:X;", 23);
  const struct {
    Answer deviceID;
    Answer extended;
    int opens;
    Lines traced;
    bool supported;
  } rows[] = {
      {"CMD:ZOLT", {}, 0, {"4 can't get device ID"}, false},
      {std::nullopt, {}, 9, {"4 can't get device ID"}, false},
      {"", {}, 9, {"4 can't get device ID"}, false},
      {longest, extended, 9, {"4 EXT is not supported", "4 MPS not supported"}, true},
      {"CMD:PJL,EXT", {}, 9, {"4 can't get EXT", "4 MPS not supported"}, false},
      {"CMD:PJL,EXT", extended, 1, {"4 can't open device path", "4 MPS not supported"}, false},
      {"CMD:PJL,EXT", extended, 9, {"4 MPS not supported"}, true},
  };
  for (const auto& row : rows) {
    device.deviceID = row.deviceID;
    device.opens = row.opens;
    device.replies[kUSBExtendedDeviceID.bytes] = {row.extended};
    EXPECT_EQ(Open() == HResult::Ok, row.traced.back() == "4 MPS not supported");
    EXPECT_EQ(trace.Texts(), row.traced);
    EXPECT_EQ(printer->IsZOLTSupported() == HResult::Ok, row.supported);
  }
  EXPECT_THAT(opening, ElementsAre("device id", "close", "request E00100", "close"));
  std::string text;
  EXPECT_EQ(printer->GetDeviceID(text), HResult::Ok);
  EXPECT_EQ(text, "CMD:PJL,EXT");
  EXPECT_EQ(device.log, Lines());  // read once
}

TEST_F(KVFPrinterUSBTest, WakeSequence) {
  const std::string asleep("\0\xAA\xAA\xAA\0\0\0\0", 8);
  const std::string awake(8, '\x01');
  const struct {
    Answers replies;  // of the status requests
    std::ptrdiff_t wakes;
    std::ptrdiff_t statusRequests;
  } rows[] = {
      {{asleep, asleep, awake}, 2, 3},
      {Always(asleep), 6, 6},  // and no more
      {{}, 0, 1},
  };
  device.deviceID = "CMD:MPS";
  for (const auto& row : rows) {
    device.replies[kUSBStatus.bytes] = row.replies;
    device.slept = 0;
    EXPECT_EQ(Open(), HResult::Ok);  // whatever the outcome
    EXPECT_EQ(std::ranges::count(opening, "request 990000"), row.wakes);
    EXPECT_EQ(std::ranges::count(opening, "request 020000"), row.statusRequests);
    EXPECT_EQ(device.slept, 1000 * row.wakes);
  }
}

TEST_F(KVFPrinterUSBTest, StatusSuppliesAndCounters) {
  Open();
  StatusBlock status;
  std::vector<SupplyEntry> supplies;
  std::uint32_t largest = 7;
  std::uint32_t total = 7;
  EXPECT_EQ(printer->GetStatusBlock(status), HResult::NotImplemented);
  EXPECT_EQ(printer->GetPageCounters(largest, total), HResult::NotImplemented);

  const std::string block = std::string("\0\0\0\x09", 4) + std::string(11, '\0') + '\x05' + std::string(239, '\0');
  device.replies[kUSBStatus.bytes] = Always("\x01\x02\x03\x04\x05\x06\x07\x08");
  device.replies[kUSBCounters.bytes] = {block.substr(0, 254), block};
  EXPECT_EQ(printer->GetStatusBlock(status), HResult::Ok);
  EXPECT_TRUE(status.valid && status.bytes[7] == 8);
  EXPECT_EQ(printer->GetSupplyLevels(supplies), HResult::Ok);
  EXPECT_EQ(supplies.size(), 4u);
  EXPECT_EQ(printer->GetPageCounters(largest, total), HResult::Fail);
  EXPECT_EQ(std::pair(largest, total), std::pair(7u, 7u));
  EXPECT_EQ(printer->GetPageCounters(largest, total), HResult::Ok);
  EXPECT_EQ(std::pair(largest, total), std::pair(5u, 9u));
}

TEST_F(KVFPrinterUSBTest, SetProtection) {
  Open();
  const std::string on = "ONxxxxxx";
  const std::string off("OFF\0\0\0\0\0", 8);
  const std::tuple<Answer, Answer, bool, bool> rows[] = {
      // the replies to on and off; whether it could be switched on and off
      {on, off, true, true},
      {off, on, false, false},
      {"ON", std::nullopt, false, false}};
  for (const auto& [toOn, toOff, turnsOn, turnsOff] : rows) {
    device.replies[kUSBProtectionOn.bytes] = {toOn};
    device.replies[kUSBProtectionOff.bytes] = {toOff};
    EXPECT_EQ(printer->SetProtection(true), turnsOn ? HResult::Ok : HResult::Fail);
    EXPECT_EQ(printer->SetProtection(false), turnsOff ? HResult::Ok : HResult::Fail);
  }
}

TEST_F(KVFPrinterUSBTest, Record) {
  Open();
  device.reads = Reads(kDocument);
  EXPECT_EQ(Collect(), "ok");
  EXPECT_THAT(device.log, ElementsAre("count jobs", "write step 1", "read 16", "write step 2",
                                      "read " + std::to_string(kDocument.size()), "close", "request 490001", "close",
                                      "request 560000", "close"));
  EXPECT_EQ(record.DeviceValues(), (ElementValues{{"CountryIndex", "12"},
                                                  {"GeneralSerialNumber", "SN9"},
                                                  {"MDL", "Velnora PHZ-1"},
                                                  {"ProductType", "P"},
                                                  {"SystemFirmwareVersion", "V1.2"}}));
  EXPECT_EQ(record.CounterValues(), (ElementValues{{"DevTotalMonoCount", "7"}}));
  EXPECT_FALSE(record.IsDocumentMode());

  device.deviceID = "MDL:Velnora PHZ-1;CMD:ZOLT,FWV,RDS";
  Open();
  printer->SetQueueName(L"");
  device.reads = Reads(kDocument);
  EXPECT_EQ(Collect(), "ok");
  EXPECT_TRUE(record.IsDocumentMode());
  EXPECT_EQ(record.DeviceValues().at("ProductType"), "PHZ");
  EXPECT_THAT(device.log, Not(Contains("count jobs")));  // a queue without a name has none
  std::string codes;
  EXPECT_EQ(printer->GetZOLTInformation(record, codes), HResult::Ok);  // the record holds the document already
}

// Each step of the exchange failing, in its order.
TEST_F(KVFPrinterUSBTest, BrokenExchanges) {
  const auto announcing = [](const char(&length)[5]) { return std::string(12, '\0') + std::string(length, 4); };
  const std::string five = announcing("\0\0\0\x05");
  const struct {
    Answers reads;
    int writes;
    std::size_t steps;  // that were made, counting the jobs and closing included
  } rows[] = {
      {{}, 0, 3},
      {{}, 9, 4},                                // no reply
      {{announcing("\0\0\0\0")}, 9, 4},          // length 0
      {{announcing("\xFF\xFF\xFF\xFF")}, 9, 4},  // 4 GiB less one
      {{announcing("\0\x10\0\x01")}, 9, 4},      // 1 MiB and one
      {{five}, 1, 5},
      {{five, "<a/>"}, 9, 6},  // shorter than announced
  };
  Open();
  trace.lines.clear();
  for (const auto& row : rows) {
    device.reads = row.reads;
    device.writes = row.writes;
    EXPECT_EQ(Collect(), "/xml error");
    EXPECT_EQ(device.log.size(), row.steps) << testing::PrintToString(device.log);
  }
  EXPECT_EQ(trace.Texts(), (Lines{"3 usb document too long : 4294967295", "3 usb document too long : 1048577"}));
}

// A printer with every fault at once, mended one by one.
TEST_F(KVFPrinterUSBTest, CodesInTheOrderOfTheFailures) {
  device = FakeUSBPrinter();
  device.deviceID = "CMD:FWV";
  device.acquires = false;
  device.opensPipes = false;
  std::string document = "no document";
  const std::pair<const char*, std::function<void()>> rows[] = {
      {"", [&] { device.deviceID = "CMD:ZOLT"; }},  // a printer without support is not asked
      {"/lock failed", [&] { device.acquires.reset(), device.jobs = 1; }},
      {"/job pending", [&] { device.jobs = -1; }},                  // a queue that can't be asked holds nothing up
      {"/open fail/xml error", [&] { device.opensPipes = true; }},  // it goes on with an empty text
      {"/xml errorno document", [&] { document = "<root/>"; }},
      {"/modelname err", [&] { device.deviceID = "CMD:ZOLT;MDL:M"; }},
      {"/serialno err", [&] { device.replies[kUSBSerialNumber.bytes] = Always("SN9"); }},
      {"/fwv err", [&] { device.replies[kUSBFirmwareVersion.bytes] = Always("V1"); }},  // it is not announced
      {"/fwv err", [&] { device.deviceID = "CMD:ZOLT,FWV;MDL:M"; }},
      {"/no ZOLT el/no Count el", [&] { document = kDocument; }},
      {"ok", [] {}},
  };
  for (const auto& [codes, mend] : rows) {
    device.reads = Reads(document);
    Open();
    EXPECT_EQ(Collect(), codes);
    EXPECT_EQ(device.log.empty(), *codes == '\0');
    mend();
  }
}

TEST_F(KVFPrinterUSBTest, LockIsHeldDuringTheExchangeAndReleasedUntilThatSucceeds) {
  device.acquires = true;
  device.failingReleases = 1;
  device.jobs = 3;  // the lock decides, not the jobs
  Open();
  EXPECT_EQ(Collect(), "/xml error");
  EXPECT_THAT(device.log, ElementsAre("acquire 153", "write step 1", "read 16", "close", "release 153", "release 153"));
  EXPECT_EQ(device.slept, 500u);
  device.failingReleases = 500;
  Collect();
  EXPECT_EQ(std::ranges::count(device.log, "release 153"), 101);
}

TEST_F(KVFPrinterUSBTest, ProtectionDocument) {
  Open();
  device.reads = Reads(kDocument);
  device.reads.push_front("short");
  EXPECT_EQ(CollectProtection(), "ok");
  EXPECT_EQ(trace.Texts(), (Lines{"4 [ZT] more try to get xml.: 0 ..", "4 [ZT] more try to get xml.: 1 ..",
                                  "4 [ZT] Success to get xml..."}));
  EXPECT_EQ(device.slept, 500u);
  EXPECT_EQ(CollectProtection(), "/xml error");
  EXPECT_EQ(trace.Texts().back(), "4 [ZT] more try to get xml.: 2 ..");
  EXPECT_EQ(device.slept, 1500u);  // between the exchanges, not after the last

  device.opensPipes = false;
  EXPECT_EQ(CollectProtection(), "/open fail");
  EXPECT_EQ(trace.Texts().back(), "4 [ZT] getPPAInformation usb open failed.");
  device.jobs = 1;
  EXPECT_EQ(CollectProtection(), "/job pending");
  EXPECT_EQ(trace.Texts().back(), "4 [ZT] job pending");
  device.acquires = false;
  EXPECT_EQ(CollectProtection(), "/lock failed");
  EXPECT_EQ(trace.Texts().back(), "4 [ZT] locked failed");
}

}  // namespace
}  // namespace zt
