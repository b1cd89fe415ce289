#include "ZOLTDataProviderFromPrinter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

#include "Codes.h"
#include "PPAInformation.h"
#include "Text.h"
#include "TraceCapture.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

using testing::DoAll;
using testing::NiceMock;
using testing::Return;
using testing::SetArgReferee;
using testing::Throw;

constexpr std::string_view kDeviceID = "MFG:Velnora;MDL:Velnora RV-2160;CMD:PJL,ZOLT,SBXOFF,CI_52;";

using Provider = ZOLTDataProviderFromPrinter;

// MockPrinter answers Ok and leaves the outputs alone, unless a test says otherwise.
class MockPrinter : public KVFPrinter {
 public:
  explicit MockPrinter(std::string_view deviceID) { AdoptDeviceID(deviceID); }

  MOCK_METHOD(HResult, Open, (), (override));
  MOCK_METHOD(HResult, GetPortAddress, (std::wstring&), (override));
  MOCK_METHOD(HResult, CollectZOLT, (ZOLTInformation&, Codes&), (override));
  MOCK_METHOD(HResult, CollectPPA, (PPAInformation&, Codes&), (override));
  MOCK_METHOD(HResult, ReadSerialNumber, (std::string&), (override));
  MOCK_METHOD(HResult, GetPageCounters, (std::uint32_t&, std::uint32_t&), (override));
  MOCK_METHOD(HResult, GetSBXState, (ProtectionState*), (override));
  MOCK_METHOD(HResult, GetCountryIndex, (std::string&), (override));
  MOCK_METHOD(HResult, GetExtendedDeviceID, (std::string&), (override));
  MOCK_METHOD(HResult, SetProtection, (bool), (override));
  MOCK_METHOD(bool, IsUSB, (), (const, override));

  // The provider asks for none of these.
  MOCK_METHOD(HResult, GetStatusBlock, (StatusBlock&), (override));
  MOCK_METHOD(HResult, GetFirmwareVersion, (std::string&), (override));
  MOCK_METHOD(HResult, GetSupplyLevels, (std::vector<SupplyEntry>&), (override));
  MOCK_METHOD(HResult, GetDeviceID, (std::string&), (override));
};

// A collection that appends these codes.
auto Collects(HResult result, std::string codes) {
  return [=](ReportRecord&, Codes& gathered) {
    gathered.Add(codes);
    return result;
  };
}

class ProviderTest : public testing::Test {
 protected:
  // The provider of a queue with a printer of that device ID, which stays reachable as `printer`.
  Provider Make(std::string_view deviceID = kDeviceID) {
    auto made = std::make_unique<NiceMock<MockPrinter>>(deviceID);
    printer = made.get();
    ON_CALL(*printer, GetPortAddress).WillByDefault(DoAll(SetArgReferee<0>(L"10.0.0.7"), Return(addressResult)));
    ON_CALL(*printer, ReadSerialNumber).WillByDefault(DoAll(SetArgReferee<0>("SN7"), Return(HResult::Ok)));
    return WithPrinter(std::move(made));
  }

  Provider WithPrinter(std::unique_ptr<KVFPrinter> made) {
    return {L"Queue",
            {.createPrinter = [&made](const std::wstring&) { return std::move(made); },
             .countJobs = [this](const std::wstring&) { return jobs.at(counted++); },
             .sendRawJob = [this](const std::wstring&, std::string_view bytes) { return sent += bytes, sends; },
             .readHostVersion = [this] { return hostVersion; },
             .pause = [this](std::uint32_t milliseconds) { slept += milliseconds; }}};
  }

  // The last of what was traced since the last time, without its level.
  std::string Said() {
    const std::vector<std::string> lines = std::exchange(trace.lines, {});
    return lines.empty() ? "" : lines.back().substr(2);
  }

  MockPrinter* printer = nullptr;
  HResult addressResult = HResult::Ok;
  std::vector<std::int32_t> jobs;
  std::size_t counted = 0;
  std::string sent;
  bool sends = true;
  std::optional<std::string> hostVersion = "3.2.1";
  std::uint32_t slept = 0;
  std::string text = "old";
  ZOLTInformation record;
  PPAInformation protection;
  TraceCapture trace;
};

TEST_F(ProviderTest, Initialize) {
  Provider provider = Make();
  EXPECT_EQ(provider.GetPrinterAddress(), "10.0.0.7");
  EXPECT_CALL(*printer, Open).WillOnce(Return(HResult::Fail)).WillOnce(Return(HResult::Ok));
  EXPECT_FALSE(provider.Initialize(true));
  EXPECT_EQ(Said(), "failed to initialize printer");
  EXPECT_TRUE(provider.Initialize(false));
  EXPECT_EQ(Said(), "");
  EXPECT_TRUE(provider.Initialize(true));  // it is open; only the support is checked
  EXPECT_EQ(Said(), "Checking ZOLT support from device...");

  Provider unsupported = Make("CMD:PJL;");
  EXPECT_FALSE(unsupported.Initialize(true));
  EXPECT_EQ(Said(), "ZOLT is not supported!");
  EXPECT_TRUE(unsupported.Initialize(false));  // it is open all the same
  addressResult = HResult::Fail;
  EXPECT_EQ(Make().GetPrinterAddress(), "");
  EXPECT_EQ(Said(), "Can't get address from Queue!!! Bye~");
}

// What each operation answers, what it says last of a printer that refuses, and of one that is not open, or not there.
// What they say when they succeed is seen end to end.
TEST_F(ProviderTest, Operations) {
  ProtectionState state = ProtectionState::OT;
  std::uint32_t life = 0;
  std::uint32_t changes = 0;
  const std::string longCodes = "/xml error" + std::string(990, 'x');
  const std::pair<std::function<bool(Provider&)>, std::string> rows[] = {
      {[&](Provider& p) { return p.CheckSBXSupport(&state); }, "SBX is not supported!"},
      {[&](Provider& p) { return p.GetCountryIndex(text); }, "[ZT] Country Index from ext not supported!"},
      {[&](Provider& p) { return p.GetModelName(text); }, "ModelName is missing!!!"},
      {[&](Provider& p) { return p.GetTonerLife(&life, &changes); }, " toner life information is missing!!!"},
      {[](Provider& p) { return p.ExtendedIDContains("A,B"); }, "[ZT] Failed get device id ext"},
      {[&](Provider& p) { return p.GetHostVersion(record); }, ""},
      {[](Provider& p) { return p.SetProtection(true); }, ""},
      {[&](Provider& p) { return p.CollectSBX(protection); }, "failed to collect from Queue : /no memory"},
      {[&](Provider& p) { return p.CollectZOLT(record); }, "failed to collect from Queue : " + longCodes},
      {[&](Provider& p) { return p.GetSerialNumber(text); }, "Serial Number is missing!!!"},
  };
  Provider good = Make();
  ON_CALL(*printer, GetPageCounters)
      .WillByDefault(DoAll(SetArgReferee<0>(150), SetArgReferee<1>(3), Return(HResult::Ok)));
  ON_CALL(*printer, GetExtendedDeviceID).WillByDefault(DoAll(SetArgReferee<0>("CMD:A,B;"), Return(HResult::Ok)));
  // A printer without an index fails, which counts as an answer; the caller looks at the text.
  ON_CALL(*printer, GetCountryIndex).WillByDefault(Return(HResult::Fail));
  good.Initialize(false);
  for (const auto& [ask, said] : rows) EXPECT_TRUE(ask(good)) << said;
  EXPECT_EQ(std::pair(life, changes), std::pair(150u, 3u));
  EXPECT_EQ(record.DeviceValues().at("HostVersion"), "3.2.1");
  sends = false;
  EXPECT_FALSE(good.SetProtection(false));
  EXPECT_EQ(
      sent,
      "@PJL DEFAULT PROTECT_FROM_OVERRUN_CONSUMABLES=ON\r\n@PJL DEFAULT PROTECT_FROM_OVERRUN_CONSUMABLES=OFF\r\n");
  sends = true;

  Provider refusing = Make("CMD:ZOLT");
  ON_CALL(*printer, IsUSB).WillByDefault(Return(true));
  ON_CALL(*printer, GetSBXState).WillByDefault(Return(HResult::False));
  ON_CALL(*printer, GetCountryIndex).WillByDefault(Return(HResult::False));
  ON_CALL(*printer, GetPageCounters).WillByDefault(Return(HResult::Fail));
  ON_CALL(*printer, GetExtendedDeviceID).WillByDefault(Return(HResult::False));
  ON_CALL(*printer, SetProtection).WillByDefault(Return(HResult::Fail));
  ON_CALL(*printer, CollectPPA).WillByDefault(Throw(std::bad_alloc()));
  ON_CALL(*printer, CollectZOLT).WillByDefault(Collects(HResult::Fail, longCodes + "and more"));
  ON_CALL(*printer, ReadSerialNumber).WillByDefault(Return(HResult::Fail));
  hostVersion.reset();
  refusing.Initialize(false);
  Provider closed = Make();
  Provider none = WithPrinter(nullptr);
  EXPECT_EQ(Said(), "Can't get address from QName : Queue!!! Bye~");
  for (const auto& [ask, said] : rows) {
    EXPECT_FALSE(ask(refusing)) << said;
    EXPECT_EQ(Said(), said);
    EXPECT_FALSE(ask(closed)) << said;
    EXPECT_EQ(Said(), "failed to initialize printer");
    EXPECT_FALSE(ask(none)) << said;
    EXPECT_EQ(Said(), "printer invalid");
  }
  EXPECT_FALSE(none.Initialize(false));
  EXPECT_TRUE(none.SendRawToQueue("text"));  // needs no printer
  EXPECT_FALSE(none.SendRawToQueue(nullptr) || good.CheckSBXSupport(nullptr) || good.GetTonerLife(nullptr, &changes) ||
               good.GetTonerLife(&life, nullptr));
}

TEST_F(ProviderTest, SerialNumbers) {
  const std::pair<const char*, bool> rows[] = {{" SN7\r\n", true}, {"MPS-MODE\r\n", false}, {"MPS-MODE2", true}};
  for (const auto& [answer, result] : rows) {
    Provider provider = Make();
    EXPECT_CALL(*printer, ReadSerialNumber)  // asked until it has answered once
        .WillOnce(Return(HResult::Fail))
        .WillOnce(DoAll(SetArgReferee<0>(answer), Return(HResult::Ok)));
    provider.Initialize(false);
    EXPECT_FALSE(provider.GetSerialNumber(text));
    EXPECT_EQ(provider.GetSerialNumber(text), result) << answer;
    EXPECT_EQ(provider.GetSerialNumber(text), result) << answer;
    EXPECT_EQ(text, Trim(answer));
  }
}

TEST_F(ProviderTest, WaitForJobs) {
  const struct {
    std::string said;
    std::vector<std::int32_t> jobs;  // at each look; between these it waits a second
    int maximumPolls;
  } rows[] = {
      {"no job break...", {2, 1, 0}, 30},
      {"timeout...", std::vector<std::int32_t>(10, 1), 10},
      {"timeout...", {1}, 0},
      {"- job break...", {3, -1}, 30},
  };
  Provider provider = Make();
  for (const auto& row : rows) {
    jobs = row.jobs;
    counted = 0;
    slept = 0;
    bool pending = row.said == "no job break...";
    EXPECT_EQ(provider.WaitForJobs(row.maximumPolls, pending), row.said != "- job break...");
    EXPECT_EQ(pending, row.said != "no job break...");
    EXPECT_EQ(counted, row.jobs.size());
    EXPECT_EQ(slept, 1000 * (counted - 1));
    EXPECT_EQ(Said(), row.said);
  }
}

// The document that was read for the protection serves the report, too.
TEST_F(ProviderTest, Collections) {
  Provider provider = Make();
  provider.Initialize(false);
  EXPECT_CALL(*printer, GetCountryIndex).WillOnce(DoAll(SetArgReferee<0>("52"), Return(HResult::Ok)));
  EXPECT_CALL(*printer, CollectPPA).WillOnce([](PPAInformation& collected, Codes&) {
    collected.SetDocument("<root/>");
    return HResult::Ok;
  });
  EXPECT_TRUE(provider.CollectSBX(protection) && provider.CollectSBX(protection));
  EXPECT_EQ(provider.GetSBXDocument(), "<root/>");
  EXPECT_EQ(protection.DeviceValues(),
            (ElementValues{{"CountryIndex", "52"}, {"GeneralSerialNumber", "SN7"}, {"MDL", "Velnora RV-2160"}}));

  printer->SetUniversalDriver(true);
  hostVersion.reset();
  ON_CALL(*printer, CollectZOLT).WillByDefault(Collects(HResult::Ok, "/fwv err"));
  EXPECT_TRUE(provider.CollectZOLT(record));
  EXPECT_EQ(record.Document().Text(), "<root/>");
  EXPECT_NE(record.BuildXml().find("<SourceType>RQD</SourceType>"), std::string::npos);
  EXPECT_EQ(Said(), "collected with gaps from Queue : /fwv err");
}

}  // namespace
}  // namespace zt
