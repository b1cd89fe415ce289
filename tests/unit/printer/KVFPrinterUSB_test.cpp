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
using testing::IsEmpty;
using testing::Not;

constexpr const char* kDocument =
    "<root><ZOLT><ProductType>P</ProductType><Count><DevTotalMonoCount>7</DevTotalMonoCount></Count>"
    "<Supplies></Supplies></ZOLT></root>";
const std::string kAsleep("\0\xAA\xAA\xAA\0\0\0\0", 8);
const std::string kAwake(8, '\x01');

class KVFPrinterUSBTest : public testing::Test {
 protected:
  using Lines = std::vector<std::string>;

  KVFPrinterUSBTest() {
    Announce("ZOLT,FWV,CI_12");
    device.Reply(kUSBSerialNumber, " SN9\r\n");
    device.Reply(kUSBFirmwareVersion, "V1.2");
    printer.SetQueueName(L"Queue");
  }

  void Announce(const std::string& commands) {
    device.deviceID = "MFG:Velnora;MDL:Velnora PHZ-1;CMD:" + commands + ";";
  }

  void OpenQuietly() {
    EXPECT_EQ(printer.Open(), HResult::Ok);
    device.log.clear();
    trace.lines.clear();
    trace.debug.clear();
  }

  HResult Collect() {
    errorText.clear();
    record = {};
    return printer.GetZOLTInformation(record, errorText);
  }

  HResult CollectProtection() {
    errorText.clear();
    PPAInformation protection;
    return printer.GetPPAInformation(protection, errorText);
  }

  FakeUSBPrinter device;
  KVFPrinterUSB printer{L"\\\\?\\usb#1", device.Services()};
  ZOLTInformation record;
  std::string errorText;
  TraceCapture trace;
};

TEST_F(KVFPrinterUSBTest, OpenReadsTheDeviceIDOnce) {
  EXPECT_EQ(printer.Open(), HResult::Ok);
  EXPECT_THAT(device.log, ElementsAre("open", "device id", "close"));
  EXPECT_EQ(trace.Texts(), (Lines{"4 EXT is not supported", "4 MPS not supported"}));
  std::string text;
  EXPECT_EQ(printer.GetDeviceID(text), HResult::Ok);
  EXPECT_EQ(text, *device.deviceID);
  EXPECT_EQ(device.log.size(), 3u);
  EXPECT_EQ(printer.GetModelFamilyName(text), HResult::Ok);
  EXPECT_EQ(text, "PHZ");
  std::wstring path;
  EXPECT_EQ(printer.GetPortAddress(path), HResult::Ok);
  EXPECT_EQ(path, L"\\\\?\\usb#1");
  EXPECT_TRUE(printer.IsUSB());
}

TEST_F(KVFPrinterUSBTest, OpenWithoutADeviceID) {
  for (const std::optional<std::string>& answer : {std::optional<std::string>(), std::optional<std::string>("")}) {
    device.deviceID = answer;
    trace.lines.clear();
    EXPECT_EQ(printer.Open(), HResult::Fail);
    EXPECT_EQ(trace.Texts(), Lines{"4 can't get device ID"});
  }
  device.opens = false;
  EXPECT_EQ(printer.Open(), HResult::Fail);
  EXPECT_THAT(trace.debug, ElementsAre("Can't open"));
}

TEST_F(KVFPrinterUSBTest, OpenMergesTheExtendedID) {
  Announce("PJL,EXT");
  device.Reply(kUSBExtendedDeviceID, std::string("CMD:ZOLT,SBXOFF;\0CMD:X;", 23));
  EXPECT_EQ(printer.Open(), HResult::Ok);
  EXPECT_THAT(device.log, ElementsAre("open", "device id", "close", "open", "request E0 01 00", "close"));
  EXPECT_EQ(printer.IsZOLTSupported(), HResult::Ok);
  std::uint32_t state = 0;
  EXPECT_EQ(printer.GetSBXState(&state), HResult::Ok);
  EXPECT_EQ(state, 2u);
  EXPECT_EQ(trace.Texts(), Lines{"4 MPS not supported"});
  std::string text;
  EXPECT_EQ(printer.GetExtendedDeviceID(text), HResult::Ok);
  EXPECT_EQ(text, "CMD:ZOLT,SBXOFF;");
}

TEST_F(KVFPrinterUSBTest, OpenWithoutTheExtendedID) {
  Announce("ZOLT,EXT");
  EXPECT_EQ(printer.Open(), HResult::Ok);
  EXPECT_EQ(trace.Texts(), (Lines{"4 can't get EXT", "4 MPS not supported"}));
}

TEST_F(KVFPrinterUSBTest, WakeSequence) {
  struct Row {
    Lines replies;  // of the status requests; "-" fails
    int wakes;
    int statusRequests;
  };
  const Row rows[] = {
      {{kAwake}, 0, 1},  {{kAsleep, kAsleep, kAwake}, 2, 3},
      {{kAsleep}, 6, 6},  // and no more
      {{"-"}, 0, 1},     {{kAsleep, "-"}, 1, 2},
  };
  for (const Row& row : rows) {
    device = FakeUSBPrinter();
    Announce("ZOLT,MPS");
    for (const std::string& reply : row.replies) {
      device.Reply(kUSBStatus, reply == "-" ? std::nullopt : std::optional(reply));
    }
    KVFPrinterUSB sleeper{L"path", device.Services()};
    EXPECT_EQ(sleeper.Open(), HResult::Ok);  // whatever the outcome
    EXPECT_EQ(std::count(device.log.begin(), device.log.end(), "request 99 00 00"), row.wakes);
    EXPECT_EQ(std::count(device.log.begin(), device.log.end(), "request 02 00 00"), row.statusRequests);
    EXPECT_EQ(device.slept, 1000u * static_cast<std::uint32_t>(row.wakes));
  }
}

TEST_F(KVFPrinterUSBTest, StatusAndSupplies) {
  OpenQuietly();
  StatusBlock status;
  std::vector<SupplyEntry> supplies;
  EXPECT_EQ(printer.GetStatusBlock(status), HResult::NotImplemented);
  EXPECT_EQ(printer.GetSupplyLevels(supplies), HResult::NotImplemented);
  EXPECT_FALSE(status.valid);

  device.Reply(kUSBStatus, "\x01\x02\x03\x04\x05\x06\x07\x08");
  EXPECT_EQ(printer.GetStatusBlock(status), HResult::Ok);
  EXPECT_TRUE(status.valid);
  EXPECT_THAT(status.bytes, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
  EXPECT_EQ(printer.GetSupplyLevels(supplies), HResult::Ok);
  EXPECT_EQ(supplies.size(), 4u);

  device.opens = false;
  EXPECT_EQ(printer.GetStatusBlock(status), HResult::Fail);
}

TEST_F(KVFPrinterUSBTest, PageCounters) {
  OpenQuietly();
  std::uint32_t largest = 7;
  std::uint32_t total = 7;
  EXPECT_EQ(printer.GetPageCounters(largest, total), HResult::NotImplemented);
  std::string block(255, '\0');
  block[3] = 9;
  block[15] = 5;
  device.Reply(kUSBCounters, block.substr(0, 19));
  device.Reply(kUSBCounters, block.substr(0, 254));
  device.Reply(kUSBCounters, block);
  device.replies[kUSBCounters.bytes].pop_front();
  EXPECT_EQ(printer.GetPageCounters(largest, total), HResult::Fail);
  EXPECT_EQ(std::pair(largest, total), std::pair(7u, 7u));
  EXPECT_EQ(printer.GetPageCounters(largest, total), HResult::Ok);
  EXPECT_EQ(std::pair(largest, total), std::pair(5u, 9u));
}

TEST_F(KVFPrinterUSBTest, SerialNumberIsAskedOnce) {
  OpenQuietly();
  std::string text;
  EXPECT_EQ(printer.GetSerialNumber(text), HResult::Ok);
  EXPECT_EQ(printer.GetSerialNumber(text), HResult::Ok);
  EXPECT_EQ(text, "SN9");
  EXPECT_THAT(device.log, ElementsAre("open", "request 49 00 01", "close"));
}

TEST_F(KVFPrinterUSBTest, FirmwareVersionNeedsItsCommand) {
  Announce("ZOLT");
  OpenQuietly();
  std::string version = "old";
  EXPECT_EQ(printer.GetFirmwareVersion(version), HResult::Fail);
  EXPECT_EQ(version, "old");
  EXPECT_THAT(device.log, IsEmpty());
}

TEST_F(KVFPrinterUSBTest, SetProtection) {
  struct Row {
    bool on;
    std::optional<std::string> reply;
    HResult result;
  };
  const std::string no(8, '\0');
  const Row rows[] = {
      {true, std::string("ON\0\0\0\0\0\0", 8), HResult::Ok},
      {false, std::string("OFF\0\0\0\0\0", 8), HResult::Ok},
      {true, "ONxxxxxx", HResult::Ok},
      {true, std::string("OFF\0\0\0\0\0", 8), HResult::Fail},
      {false, std::string("OF\0\0\0\0\0\0", 8), HResult::Fail},
      {true, "ON", HResult::Fail},
      {true, no, HResult::Fail},
      {false, std::nullopt, HResult::Fail},
  };
  OpenQuietly();
  for (const Row& row : rows) {
    device.replies.clear();
    device.Reply(row.on ? kUSBProtectionOn : kUSBProtectionOff, row.reply);
    EXPECT_EQ(printer.SetProtection(row.on), row.result) << row.reply.value_or("-");
  }
}

TEST_F(KVFPrinterUSBTest, RecordFromTheNormalReader) {
  OpenQuietly();
  device.AddDocument(kDocument);
  EXPECT_EQ(Collect(), HResult::Ok);
  EXPECT_EQ(errorText, "");
  EXPECT_THAT(device.log, ElementsAre("count jobs", "open pipes", "write 16 step 1", "read 16", "write 16 step 2",
                                      "read " + std::to_string(std::string_view(kDocument).size()), "close pipes",
                                      "open", "request 49 00 01", "close", "open", "request 56 00 00", "close"));
  EXPECT_EQ(record.DeviceValues(), (ElementValues{{"CountryIndex", "12"},
                                                  {"GeneralSerialNumber", "SN9"},
                                                  {"MDL", "Velnora PHZ-1"},
                                                  {"ProductType", "P"},
                                                  {"SystemFirmwareVersion", "V1.2"}}));
  EXPECT_EQ(record.CounterValues(), (ElementValues{{"DevTotalMonoCount", "7"}}));
  EXPECT_FALSE(record.IsDocumentMode());
}

TEST_F(KVFPrinterUSBTest, RecordInDocumentMode) {
  Announce("ZOLT,FWV,RDS");
  OpenQuietly();
  record.SetDeviceDocument(kDocument);  // read before in this run
  EXPECT_EQ(printer.GetZOLTInformation(record, errorText), HResult::Ok);
  EXPECT_TRUE(record.IsDocumentMode());
  EXPECT_EQ(record.DeviceValues().at("ProductType"), "PHZ");
  EXPECT_THAT(device.log, Not(Contains("open pipes")));
}

// Each step of the exchange failing, in its order.
TEST_F(KVFPrinterUSBTest, BrokenExchanges) {
  struct Row {
    Lines reads;
    std::size_t writes;
    std::size_t steps;  // that were made, opening and closing included
  };
  const std::string header = std::string(12, '\0') + std::string("\0\0\0\x05", 4);
  const Row rows[] = {
      {{}, 0, 3},
      {{}, 9, 4},                                                    // no reply
      {{header.substr(0, 15)}, 9, 4},                                // cut short
      {{std::string(16, '\0')}, 9, 4},                               // length 0
      {{std::string(12, '\0') + "\xFF\xFF\xFF\xFE"}, 9, 4},          // 4 GiB less two
      {{std::string(12, '\0') + std::string("\1\0\0\1", 4)}, 9, 4},  // 16 MiB and one
      {{header}, 1, 5},
      {{header}, 9, 6},
      {{header, "<a/>"}, 9, 6},  // shorter than announced
  };
  OpenQuietly();
  for (const Row& row : rows) {
    device.reads = {row.reads.begin(), row.reads.end()};
    device.writesUntilFailure = row.writes;
    device.log.clear();
    EXPECT_EQ(Collect(), HResult::Fail);
    EXPECT_EQ(errorText, "/xml error");
    EXPECT_EQ(device.log.size(), row.steps + 1) << testing::PrintToString(device.log);
    EXPECT_EQ(device.log.back(), "close pipes");
  }
  EXPECT_EQ(trace.Texts(), (Lines{"3 usb document too long : 4294967294", "3 usb document too long : 16777217"}));
}

TEST_F(KVFPrinterUSBTest, CodesInTheOrderOfTheFailures) {
  OpenQuietly();
  device.jobs = 1;
  EXPECT_EQ(Collect(), HResult::Fail);
  EXPECT_EQ(errorText, "/job pending");
  device.jobs = -1;  // a queue that can't be asked holds nothing up

  device.bulkOpens = false;
  EXPECT_EQ(Collect(), HResult::Fail);
  EXPECT_EQ(errorText, "/open fail");
  device.bulkOpens = true;

  device.AddDocument("no document");
  EXPECT_EQ(Collect(), HResult::Fail);
  EXPECT_EQ(errorText, "/xml errorno document");

  device.AddDocument(kDocument);
  device.replies.clear();
  EXPECT_EQ(Collect(), HResult::Fail);
  EXPECT_EQ(errorText, "/serialno err");

  device.AddDocument(kDocument);
  device.Reply(kUSBSerialNumber, "SN9");
  EXPECT_EQ(Collect(), HResult::Fail);
  EXPECT_EQ(errorText, "/fwv err");

  device.AddDocument("<root/>");
  device.Reply(kUSBFirmwareVersion, "V1.2");
  EXPECT_EQ(Collect(), HResult::Fail);
  EXPECT_TRUE(errorText.starts_with("/no ZOLT el")) << errorText;
}

TEST_F(KVFPrinterUSBTest, PrinterWithoutAModel) {
  device.deviceID = "CMD:ZOLT,FWV";
  OpenQuietly();
  device.AddDocument(kDocument);
  EXPECT_EQ(Collect(), HResult::Fail);
  EXPECT_EQ(errorText, "/modelname err");
}

TEST_F(KVFPrinterUSBTest, PrinterWithoutSupportIsNotAsked) {
  Announce("FWV");
  OpenQuietly();
  EXPECT_EQ(Collect(), HResult::Fail);
  EXPECT_EQ(errorText, "");
  EXPECT_THAT(device.log, IsEmpty());
}

TEST_F(KVFPrinterUSBTest, QueueWithoutANameIsNotCounted) {
  printer.SetQueueName(L"");
  OpenQuietly();
  device.AddDocument(kDocument);
  EXPECT_EQ(Collect(), HResult::Ok);
  EXPECT_THAT(device.log, Not(Contains("count jobs")));
}

TEST_F(KVFPrinterUSBTest, LockIsHeldDuringTheExchange) {
  device.acquires = true;
  device.jobs = 3;  // the lock decides, not the jobs
  OpenQuietly();
  device.AddDocument(kDocument);
  EXPECT_EQ(Collect(), HResult::Ok);
  EXPECT_EQ(device.log.front(), "acquire 153");
  EXPECT_EQ(device.log.back(), "release 153");
  EXPECT_THAT(device.log, Not(Contains("count jobs")));

  device.log.clear();
  device.bulkOpens = false;
  EXPECT_EQ(Collect(), HResult::Fail);
  EXPECT_THAT(device.log, ElementsAre("acquire 153", "release 153"));  // after a failure, too
}

TEST_F(KVFPrinterUSBTest, RefusedLock) {
  device.acquires = false;
  OpenQuietly();
  EXPECT_EQ(Collect(), HResult::Fail);
  EXPECT_EQ(errorText, "/lock failed");
  EXPECT_THAT(device.log, ElementsAre("acquire 153"));
  EXPECT_EQ(trace.Texts(), Lines{"4 Failed to acquire device mon!!!"});
}

TEST_F(KVFPrinterUSBTest, ReleaseIsTriedUntilItSucceeds) {
  const std::pair<std::size_t, std::ptrdiff_t> rows[] = {{0, 1}, {3, 4}, {100, 101}, {500, 101}};
  OpenQuietly();
  for (const auto& [failures, attempts] : rows) {
    device.acquires = true;
    device.releasesThatFail = failures;
    device.slept = 0;
    device.log.clear();
    Collect();
    EXPECT_EQ(std::count(device.log.begin(), device.log.end(), "release 153"), attempts);
    EXPECT_EQ(device.slept, 500u * static_cast<std::uint32_t>(attempts - 1));
  }
}

TEST(PortContention, LocksOnce) {
  FakeUSBPrinter device;
  device.acquires = true;
  TraceCapture trace;
  {
    PortContention port(*device.Services().loadDeviceMonitor(), [](std::uint32_t) {});
    EXPECT_FALSE(port.IsLocked());
    EXPECT_TRUE(port.Lock());
    EXPECT_TRUE(port.Lock());
    EXPECT_TRUE(port.IsLocked());
    EXPECT_EQ(trace.Texts(), std::vector<std::string>{"4 Already Locked!"});
  }
  EXPECT_THAT(device.log, ElementsAre("acquire 153", "release 153"));
}

TEST_F(KVFPrinterUSBTest, ProtectionDocument) {
  OpenQuietly();
  device.reads = {"short"};
  device.AddDocument(kDocument);
  EXPECT_EQ(CollectProtection(), HResult::Ok);
  EXPECT_EQ(errorText, "");
  EXPECT_EQ(trace.Texts(), (Lines{"4 [ZT] more try to get xml.: 0 ..", "4 [ZT] more try to get xml.: 1 ..",
                                  "4 [ZT] Success to get xml..."}));
  EXPECT_THAT(trace.debug, ElementsAre("[ZT] getPPAInformation start"));
  EXPECT_EQ(device.slept, 500u);
}

TEST_F(KVFPrinterUSBTest, ProtectionDocumentFailures) {
  OpenQuietly();
  EXPECT_EQ(CollectProtection(), HResult::Fail);
  EXPECT_EQ(errorText, "/xml error");
  EXPECT_EQ(trace.Texts().back(), "4 [ZT] more try to get xml.: 2 ..");
  EXPECT_EQ(device.slept, 1000u);  // between the exchanges, not after the last

  trace.lines.clear();
  device.bulkOpens = false;
  EXPECT_EQ(CollectProtection(), HResult::Fail);
  EXPECT_EQ(errorText, "/open fail");
  EXPECT_EQ(trace.Texts(), Lines{"4 [ZT] getPPAInformation usb open failed."});

  trace.lines.clear();
  device.jobs = 1;
  EXPECT_EQ(CollectProtection(), HResult::Fail);
  EXPECT_EQ(errorText, "/job pending");
  EXPECT_EQ(trace.Texts(), Lines{"4 [ZT] job pending"});

  trace.lines.clear();
  device.acquires = false;
  EXPECT_EQ(CollectProtection(), HResult::Fail);
  EXPECT_EQ(errorText, "/lock failed");
  EXPECT_EQ(trace.Texts(), (Lines{"4 Failed to acquire device mon!!!", "4 [ZT] locked failed"}));
}

}  // namespace
}  // namespace zt
