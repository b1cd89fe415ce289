#include "KVFPrinterUSB.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeUSBPrinter.h"
#include "PPAInformation.h"
#include "TraceCapture.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

using Lines = std::vector<std::string>;

const std::string kDocument =
    "<root><ZOLT><ProductType>P</ProductType><Count><DevTotalMonoCount>7</DevTotalMonoCount></Count>"
    "<Supplies></Supplies></ZOLT></root>";

class KVFPrinterUSBTest : public testing::Test {
 protected:
  KVFPrinterUSBTest() {
    Announce("ZOLT,FWV,CI_12");
    device.Reply(kUSBSerialNumber, " SN9\r\n");
    device.Reply(kUSBFirmwareVersion, "V1.2");
    Plug();
  }

  void Announce(const std::string& commands) { device.deviceID = "MDL:Velnora PHZ-1;CMD:" + commands + ";"; }

  // Plug makes the access to the printer anew.
  void Plug() {
    printer = std::make_unique<KVFPrinterUSB>(L"\\\\?\\usb#1", device.Services());
    printer->SetQueueName(L"Queue");
  }

  // What was done since the last time.
  Lines Log() { return std::exchange(device.log, {}); }
  std::ptrdiff_t Count(const char* line) const { return std::count(device.log.begin(), device.log.end(), line); }

  Lines Traced() {
    Lines texts = trace.Texts();
    trace.lines.clear();
    return texts;
  }

  void OpenQuietly() {
    EXPECT_EQ(printer->Open(), HResult::Ok);
    Log();
    Traced();
  }

  // Both collect into a fresh record and answer the codes, behind "ok" when it succeeded.
  std::string Collect() {
    record = {};
    std::string codes;
    return (printer->GetZOLTInformation(record, codes) == HResult::Ok ? "ok" : "") + codes;
  }
  std::string CollectProtection() {
    PPAInformation protection;
    std::string codes;
    return (printer->GetPPAInformation(protection, codes) == HResult::Ok ? "ok" : "") + codes;
  }

  FakeUSBPrinter device;
  std::unique_ptr<KVFPrinterUSB> printer;
  ZOLTInformation record;
  TraceCapture trace;
};

TEST_F(KVFPrinterUSBTest, Open) {
  for (const std::optional<std::string>& answer : {std::optional<std::string>(), std::optional<std::string>("")}) {
    device.deviceID = answer;
    EXPECT_EQ(printer->Open(), HResult::Fail);
    EXPECT_EQ(Traced(), Lines{"4 can't get device ID"});
  }
  device.opens = false;
  EXPECT_EQ(printer->Open(), HResult::Fail);
  EXPECT_THAT(trace.debug, ElementsAre("Can't open"));
  Traced();

  device.opens = true;
  device.deviceID = "CMD:ZOLT;MDL:Velnora PHZ-1;CLS:" + std::string(1024 - 31, 'x');  // fills its room
  Log();
  EXPECT_EQ(printer->Open(), HResult::Ok);
  EXPECT_EQ(Traced(), (Lines{"4 EXT is not supported", "4 MPS not supported"}));
  std::string text;
  EXPECT_EQ(printer->GetDeviceID(text), HResult::Ok);
  EXPECT_EQ(text, *device.deviceID);
  EXPECT_THAT(Log(), ElementsAre("open", "device id", "close"));  // read once
  EXPECT_EQ(printer->GetModelFamilyName(text), HResult::Ok);
  EXPECT_EQ(text, "PHZ");
}

TEST_F(KVFPrinterUSBTest, ExtendedID) {
  Announce("PJL,EXT");
  EXPECT_EQ(printer->Open(), HResult::Ok);
  EXPECT_EQ(Traced(), (Lines{"4 can't get EXT", "4 MPS not supported"}));
  device.opensUntilFailure = 1;
  Plug();
  EXPECT_EQ(printer->Open(), HResult::Ok);
  EXPECT_EQ(Traced(), (Lines{"4 can't open device path", "4 MPS not supported"}));

  device.opensUntilFailure = 100;
  device.Reply(kUSBExtendedDeviceID, std::string("CMD:ZOLT,SBXOFF;\0CMD:X;", 23));
  Plug();
  Log();
  EXPECT_EQ(printer->Open(), HResult::Ok);
  EXPECT_THAT(Log(), ElementsAre("open", "device id", "close", "open", "request E0 01 00", "close"));
  EXPECT_EQ(Traced(), Lines{"4 MPS not supported"});
  EXPECT_EQ(printer->IsZOLTSupported(), HResult::Ok);
  std::string text;
  EXPECT_EQ(printer->GetExtendedDeviceID(text), HResult::Ok);
  EXPECT_EQ(text, "CMD:ZOLT,SBXOFF;");
}

TEST_F(KVFPrinterUSBTest, WakeSequence) {
  const std::string asleep("\0\xAA\xAA\xAA\0\0\0\0", 8);
  const std::string awake(8, '\x01');
  const struct {
    std::vector<std::optional<std::string>> replies;  // of the status requests; the last one stays
    int wakes;
    int statusRequests;
  } rows[] = {
      {{awake}, 0, 1},        {{asleep, asleep, awake}, 2, 3}, {{asleep}, 6, 6},  // and no more
      {{std::nullopt}, 0, 1}, {{asleep, std::nullopt}, 1, 2},
  };
  Announce("ZOLT,MPS");
  for (const auto& row : rows) {
    device.replies[kUSBStatus.bytes] = {row.replies.begin(), row.replies.end()};
    device.slept = 0;
    Plug();
    Log();
    EXPECT_EQ(printer->Open(), HResult::Ok);  // whatever the outcome
    EXPECT_EQ(Count("request 99 00 00"), row.wakes);
    EXPECT_EQ(Count("request 02 00 00"), row.statusRequests);
    EXPECT_EQ(device.slept, 1000u * static_cast<std::uint32_t>(row.wakes));
  }
}

TEST_F(KVFPrinterUSBTest, StatusSuppliesAndCounters) {
  OpenQuietly();
  StatusBlock status;
  std::vector<SupplyEntry> supplies;
  std::uint32_t largest = 7;
  std::uint32_t total = 7;
  EXPECT_EQ(printer->GetStatusBlock(status), HResult::NotImplemented);
  EXPECT_EQ(printer->GetSupplyLevels(supplies), HResult::NotImplemented);
  EXPECT_EQ(printer->GetPageCounters(largest, total), HResult::NotImplemented);
  EXPECT_FALSE(status.valid);

  std::string block(255, '\0');
  block[3] = 9;
  block[15] = 5;
  device.Reply(kUSBStatus, "\x01\x02\x03\x04\x05\x06\x07\x08");
  device.Reply(kUSBCounters, block.substr(0, 254));
  device.Reply(kUSBCounters, block);
  EXPECT_EQ(printer->GetStatusBlock(status), HResult::Ok);
  EXPECT_TRUE(status.valid);
  EXPECT_THAT(status.bytes, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
  EXPECT_EQ(printer->GetSupplyLevels(supplies), HResult::Ok);
  EXPECT_EQ(supplies.size(), 4u);
  EXPECT_EQ(printer->GetPageCounters(largest, total), HResult::Fail);
  EXPECT_EQ(std::pair(largest, total), std::pair(7u, 7u));
  EXPECT_EQ(printer->GetPageCounters(largest, total), HResult::Ok);
  EXPECT_EQ(std::pair(largest, total), std::pair(5u, 9u));
  device.opens = false;
  EXPECT_EQ(printer->GetStatusBlock(status), HResult::Fail);
}

TEST_F(KVFPrinterUSBTest, SetProtection) {
  const struct {
    bool on;
    std::optional<std::string> reply;
    HResult result;
  } rows[] = {
      {true, "ONxxxxxx", HResult::Ok},
      {false, std::string("OFF\0\0\0\0\0", 8), HResult::Ok},
      {true, std::string("OFF\0\0\0\0\0", 8), HResult::Fail},
      {false, std::string("OF\0\0\0\0\0\0", 8), HResult::Fail},
      {true, "ON", HResult::Fail},
      {false, std::nullopt, HResult::Fail},
  };
  for (const auto& row : rows) {
    device.replies.clear();
    device.Reply(row.on ? kUSBProtectionOn : kUSBProtectionOff, row.reply);
    EXPECT_EQ(printer->SetProtection(row.on), row.result) << row.reply.value_or("-");
  }
}

TEST_F(KVFPrinterUSBTest, Record) {
  OpenQuietly();
  device.AddDocument(kDocument);
  EXPECT_EQ(Collect(), "ok");
  EXPECT_THAT(Log(), ElementsAre("count jobs", "open pipes", "write 16 step 1", "read 16", "write 16 step 2",
                                 "read " + std::to_string(kDocument.size()), "close pipes", "open", "request 49 00 01",
                                 "close", "open", "request 56 00 00", "close"));
  EXPECT_EQ(record.DeviceValues(), (ElementValues{{"CountryIndex", "12"},
                                                  {"GeneralSerialNumber", "SN9"},
                                                  {"MDL", "Velnora PHZ-1"},
                                                  {"ProductType", "P"},
                                                  {"SystemFirmwareVersion", "V1.2"}}));
  EXPECT_EQ(record.CounterValues(), (ElementValues{{"DevTotalMonoCount", "7"}}));
  EXPECT_FALSE(record.IsDocumentMode());

  printer->SetQueueName(L"");
  device.AddDocument(kDocument);
  EXPECT_EQ(Collect(), "ok");
  EXPECT_THAT(Log(), Not(Contains("count jobs")));  // a queue without a name has none

  Announce("ZOLT,FWV,RDS");
  Plug();
  OpenQuietly();
  record = {};
  record.SetDocument(kDocument);  // read before in this run
  std::string codes;
  EXPECT_EQ(printer->GetZOLTInformation(record, codes), HResult::Ok);
  EXPECT_TRUE(record.IsDocumentMode());
  EXPECT_EQ(record.DeviceValues().at("ProductType"), "PHZ");
  EXPECT_THAT(Log(), Not(Contains("open pipes")));
}

// Each step of the exchange failing, in its order.
TEST_F(KVFPrinterUSBTest, BrokenExchanges) {
  const auto announcing = [](const char(&length)[5]) { return std::string(12, '\0') + std::string(length, 4); };
  const std::string five = announcing("\0\0\0\x05");
  const struct {
    Lines reads;
    std::size_t writes;
    std::size_t steps;  // that were made, opening and closing included
  } rows[] = {
      {{}, 0, 3},
      {{}, 9, 4},                                // no reply
      {{five.substr(0, 15)}, 9, 4},              // cut short
      {{announcing("\0\0\0\0")}, 9, 4},          // length 0
      {{announcing("\xFF\xFF\xFF\xFF")}, 9, 4},  // 4 GiB less one
      {{announcing("\0\x10\0\x01")}, 9, 4},      // 1 MiB and one
      {{five}, 1, 5},
      {{five}, 9, 6},
      {{five, "<a/>"}, 9, 6},  // shorter than announced
  };
  OpenQuietly();
  for (const auto& row : rows) {
    device.reads = {row.reads.begin(), row.reads.end()};
    device.writesUntilFailure = row.writes;
    Log();
    EXPECT_EQ(Collect(), "/xml error");
    EXPECT_EQ(device.log.size(), row.steps + 1) << testing::PrintToString(device.log);
    EXPECT_EQ(device.log.back(), "close pipes");
  }
  EXPECT_EQ(Traced(), (Lines{"3 usb document too long : 4294967295", "3 usb document too long : 1048577"}));
}

// A printer with every fault at once, mended one by one.
TEST_F(KVFPrinterUSBTest, CodesInTheOrderOfTheFailures) {
  device = FakeUSBPrinter();
  device.deviceID = "CMD:FWV";
  device.acquires = false;
  device.bulkOpens = false;
  std::string document = "no document";
  const std::pair<const char*, std::function<void()>> rows[] = {
      {"", [&] { device.deviceID = "CMD:ZOLT"; }},  // a printer without support is not asked
      {"/lock failed", [&] { device.acquires.reset(), device.jobs = 1; }},
      {"/job pending", [&] { device.jobs = -1; }},                 // a queue that can't be asked holds nothing up
      {"/open fail/xml error", [&] { device.bulkOpens = true; }},  // it goes on with an empty text
      {"/xml errorno document", [&] { document = "<root/>"; }},
      {"/modelname err", [&] { device.deviceID = "CMD:ZOLT;MDL:M"; }},
      {"/serialno err", [&] { device.Reply(kUSBSerialNumber, "SN9"), device.Reply(kUSBFirmwareVersion, "V1"); }},
      {"/fwv err", [&] { device.deviceID = "CMD:ZOLT,FWV;MDL:M"; }},
      {"/no ZOLT el/no Count el", [&] { document = kDocument; }},
      {"ok", [] {}},
  };
  for (const auto& [codes, mend] : rows) {
    device.reads.clear();
    device.AddDocument(document);
    Plug();
    OpenQuietly();
    EXPECT_EQ(Collect(), codes);
    EXPECT_EQ(device.log.empty(), *codes == '\0');
    mend();
  }
}

TEST_F(KVFPrinterUSBTest, LockIsHeldDuringTheExchangeAndReleasedUntilThatSucceeds) {
  device.acquires = true;
  device.jobs = 3;  // the lock decides, not the jobs
  OpenQuietly();
  device.AddDocument(kDocument);
  EXPECT_EQ(Collect(), "ok");
  EXPECT_EQ(device.log.front(), "acquire 153");
  EXPECT_EQ(device.log.back(), "release 153");
  EXPECT_THAT(Log(), Not(Contains("count jobs")));

  device.bulkOpens = false;
  const std::pair<std::size_t, std::uint32_t> rows[] = {{0, 1}, {3, 4}, {500, 101}};
  for (const auto& [failures, attempts] : rows) {
    device.releasesThatFail = failures;
    device.slept = 0;
    EXPECT_EQ(Collect(), "/open fail/xml error");
    EXPECT_EQ(device.log.front(), "acquire 153");
    EXPECT_EQ(Count("release 153"), attempts);
    EXPECT_EQ(Log().size(), attempts + 1);
    EXPECT_EQ(device.slept, 500 * (attempts - 1));
  }
  device.acquires = false;
  EXPECT_EQ(Collect(), "/lock failed");
  EXPECT_THAT(Log(), ElementsAre("acquire 153"));
}

TEST_F(KVFPrinterUSBTest, ProtectionDocument) {
  OpenQuietly();
  device.reads = {"short"};
  device.AddDocument(kDocument);
  EXPECT_EQ(CollectProtection(), "ok");
  EXPECT_EQ(Traced(), (Lines{"4 [ZT] more try to get xml.: 0 ..", "4 [ZT] more try to get xml.: 1 ..",
                             "4 [ZT] Success to get xml..."}));
  EXPECT_THAT(trace.debug, ElementsAre("[ZT] getPPAInformation start"));
  EXPECT_EQ(device.slept, 500u);

  EXPECT_EQ(CollectProtection(), "/xml error");
  EXPECT_EQ(Traced().back(), "4 [ZT] more try to get xml.: 2 ..");
  EXPECT_EQ(device.slept, 1500u);  // between the exchanges, not after the last

  device.bulkOpens = false;
  EXPECT_EQ(CollectProtection(), "/open fail");
  EXPECT_EQ(Traced(), Lines{"4 [ZT] getPPAInformation usb open failed."});
  device.jobs = 1;
  EXPECT_EQ(CollectProtection(), "/job pending");
  EXPECT_EQ(Traced(), Lines{"4 [ZT] job pending"});
  device.acquires = false;
  EXPECT_EQ(CollectProtection(), "/lock failed");
  EXPECT_EQ(Traced(), (Lines{"4 Failed to acquire device mon!!!", "4 [ZT] locked failed"}));
}

}  // namespace
}  // namespace zt
