#include "ZOLTDataProviderFromPrinter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakePrinter.h"
#include "TraceCapture.h"

namespace zt {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kDeviceID = "MFG:Velnora;MDL:Velnora RV-2160;CMD:PJL,ZOLT,SBXOFF,CI_52;";

using Lines = std::vector<std::string>;

class ProviderTest : public testing::Test {
 protected:
  // The provider of a queue with this printer, which stays reachable as `printer`.
  ZOLTDataProviderFromPrinter Provider(const char* deviceID = kDeviceID) {
    auto made = std::make_unique<FakePrinter>(deviceID);
    printer = made.get();
    return WithPrinter(std::move(made));
  }

  ZOLTDataProviderFromPrinter Initialized(const char* deviceID = kDeviceID) {
    ZOLTDataProviderFromPrinter provider = Provider(deviceID);
    provider.Initialize(false);
    return provider;
  }

  ZOLTDataProviderFromPrinter WithPrinter(std::unique_ptr<KVFPrinter> made) {
    return {L"Queue",
            {.createPrinter = [&made](const std::wstring&) { return std::move(made); },
             .countJobs = [this](const std::wstring&) { return jobs.at(counted++); },
             .sendRawJob =
                 [this](const std::wstring& queue, std::string_view bytes) {
                   sent.push_back(ToNarrow(queue) + ":" + std::string(bytes));
                   return sends;
                 },
             .readHostVersion = [this] { return hostVersion; },
             .pause = [this](std::uint32_t milliseconds) { slept += milliseconds; }}};
  }

  // What was traced since the last time, and behind it what went to the debugger output.
  Lines Said() {
    Lines said = trace.Texts();
    said.insert(said.end(), trace.debug.begin(), trace.debug.end());
    trace.lines.clear();
    trace.debug.clear();
    return said;
  }

  FakePrinter* printer = nullptr;
  std::vector<std::int32_t> jobs;
  std::size_t counted = 0;
  Lines sent;
  bool sends = true;
  std::optional<std::string> hostVersion = "3.2.1";
  std::uint32_t slept = 0;
  std::string text = "old";
  ZOLTInformation record;
  PPAInformation protection;
  TraceCapture trace;
};

TEST_F(ProviderTest, AddressOfThePrinter) {
  EXPECT_EQ(Provider().GetPrinterAddress(), "10.0.0.7");
  EXPECT_EQ(Provider().GetQueueName(), L"Queue");
  EXPECT_THAT(Said(), IsEmpty());
  EXPECT_EQ(WithPrinter(nullptr).GetPrinterAddress(), "");
  EXPECT_EQ(Said(), Lines{"2 Can't get address from QName : Queue!!! Bye~"});
  auto made = std::make_unique<FakePrinter>(kDeviceID);
  made->address.reset();
  EXPECT_EQ(WithPrinter(std::move(made)).GetPrinterAddress(), "");
  EXPECT_EQ(Said(), Lines{"2 Can't get address from Queue!!! Bye~"});
}

TEST_F(ProviderTest, Initialize) {
  ZOLTDataProviderFromPrinter provider = Provider();
  printer->result = HResult::Fail;
  EXPECT_FALSE(provider.Initialize(true));
  EXPECT_EQ(Said(), Lines{"4 failed to initialize printer"});
  printer->result = HResult::Ok;
  EXPECT_TRUE(provider.Initialize(false));
  EXPECT_TRUE(provider.Initialize(true));  // it is open; only the support is checked
  EXPECT_EQ(Said(), (Lines{"4 the printer has been already initialized.", "4 Checking ZOLT support from device..."}));
  EXPECT_THAT(printer->calls, ElementsAre("Open", "Open"));

  ZOLTDataProviderFromPrinter unsupported = Provider("CMD:PJL;");
  EXPECT_FALSE(unsupported.Initialize(true));
  EXPECT_EQ(Said(), (Lines{"4 Checking ZOLT support from device...", "4 ZOLT is not supported!"}));
  EXPECT_TRUE(unsupported.Initialize(false));  // it is open all the same
}

// What each operation says of a printer that refuses, and all of one that is not open, or not there. What they say when
// they succeed is seen end to end.
TEST_F(ProviderTest, RefusedOperations) {
  using Provider = ZOLTDataProviderFromPrinter;
  ProtectionState state = ProtectionState::OT;
  std::uint32_t life = 0;
  std::uint32_t changes = 0;
  std::string country = "old";
  const Lines collecting = {"4 Start collecting..."};  // said before the printer is looked for
  const Lines collectingSBX = {"4 Start SBX collecting..."};
  const std::string failed = "3 failed to collect from Queue : /lock failed";
  const struct {
    std::function<bool(Provider&)> ask;
    Lines first;
    Lines refused;
  } rows[] = {
      {[&](Provider& p) { return p.CheckSBXSupport(&state); },
       {},
       {"4 SBX is not supported!", "Checking SBX support from device..."}},
      {[&](Provider& p) { return p.GetModelName(text); }, {}, {"4 Get ModelName...", "2 ModelName is missing!!!"}},
      {[&](Provider& p) { return p.GetTonerLife(&life, &changes); },
       {},
       {"4 Get  toner life information and if it change...", "2  toner life information is missing!!!"}},
      {[&](Provider& p) { return p.GetCountryIndex(country); },
       {},
       {"4 [ZT] Country Index from ext not supported!", "[ZT] Get country Index from ext."}},
      {[](Provider& p) { return p.ExtendedIDContains("A,B"); },
       {},
       {"4 [ZT] Failed get device id ext", "[ZT] Get device ID Ext."}},
      {[&](Provider& p) { return p.GetHostVersion(record); }, {}, {}},
      {[](Provider& p) { return p.SetProtection(true); }, {}, {"[ZT] Protection On using vendor command : USB"}},
      {[&](Provider& p) { return p.CollectSBX(protection); }, collectingSBX, {"4 End SBX collecting...", failed}},
      {[&](Provider& p) { return p.CollectZOLT(record); }, collecting, {"4 End collecting...", failed}},
      {[&](Provider& p) { return p.GetSerialNumber(text); },
       {},
       {"4 Get Serial number...", "2 Serial Number is missing!!!"}},
  };
  Provider good = Initialized();
  printer->counters = {150, 3};
  for (const auto& row : rows) EXPECT_TRUE(row.ask(good));
  EXPECT_EQ(std::tuple(state, text, life, changes, country),
            std::tuple(ProtectionState::Off, std::string("SN7"), 150u, 3u, std::string("52")));
  EXPECT_EQ(record.DeviceValues().at("HostVersion"), "3.2.1");
  EXPECT_FALSE(good.CheckSBXSupport(nullptr) || good.GetTonerLife(nullptr, &changes) ||
               good.GetTonerLife(&life, nullptr) || good.ExtendedIDContains("B,A") || good.SendRawToQueue(nullptr));
  // A printer without an index answers Fail, which counts as an answer; the caller looks at the text.
  printer->identityResult = HResult::Fail;
  EXPECT_TRUE(good.GetCountryIndex(country));

  Provider refusing = Initialized("CMD:ZOLT");
  printer->usb = true;
  printer->result = HResult::Fail;
  printer->identityResult = HResult::False;
  printer->serialNumber.reset();
  printer->codes = "/lock failed";
  printer->document = "<root/>";
  hostVersion.reset();
  Provider none = WithPrinter(nullptr);
  FakePrinter* const asked = printer;
  Provider closed = this->Provider();
  Said();
  for (const auto& row : rows) {
    Lines expected = row.first;
    expected.insert(expected.end(), row.refused.begin(), row.refused.end());
    EXPECT_FALSE(row.ask(refusing));
    EXPECT_EQ(Said(), expected);
    expected = row.first;
    expected.push_back("4 failed to initialize printer");
    EXPECT_FALSE(row.ask(closed));
    EXPECT_EQ(Said(), expected);
    expected.back() = "4 printer invalid";
    EXPECT_FALSE(row.ask(none));
    EXPECT_EQ(Said(), expected);
  }
  EXPECT_EQ(refusing.GetSBXDocument(), "");
  EXPECT_FALSE(none.Initialize(false));
  EXPECT_EQ(Said(), Lines{"4 printer invalid"});
  EXPECT_THAT(printer->calls, IsEmpty());
  EXPECT_TRUE(none.SendRawToQueue("text"));  // needs no printer
  EXPECT_EQ(sent.back(), "Queue:text");

  asked->codes = "/xml error" + std::string(5000, 'x');
  EXPECT_FALSE(refusing.CollectZOLT(record));
  EXPECT_EQ(Said().back(), "3 failed to collect from Queue : /xml error" + std::string(990, 'x'));
  asked->memory = false;
  EXPECT_FALSE(refusing.CollectSBX(protection));
  EXPECT_EQ(Said().back(), "3 failed to collect from Queue : /no memory");
}

TEST_F(ProviderTest, SerialNumbers) {
  const struct {
    std::optional<std::string> answer;
    std::string serialNumber;
    bool result;
  } rows[] = {
      {"ABC123\r\n", "ABC123", true},   {"MPS-MODE", "MPS-MODE", false}, {" \r\n", "", true},
      {"MPS-MODE2", "MPS-MODE2", true}, {std::nullopt, "old", false},
  };
  for (const auto& row : rows) {
    ZOLTDataProviderFromPrinter provider = Initialized();
    printer->serialNumber = row.answer;
    text = "old";
    EXPECT_EQ(provider.GetSerialNumber(text), row.result) << row.answer.value_or("-");
    EXPECT_EQ(text, row.serialNumber);
    EXPECT_EQ(Said(), row.answer ? Lines{"4 Get Serial number..."}
                                 : (Lines{"4 Get Serial number...", "2 Serial Number is missing!!!"}));
    provider.GetSerialNumber(text);
    EXPECT_EQ(printer->calls.size(), row.answer ? 2u : 3u);  // asked until it has answered once
    Said();
  }
}

TEST_F(ProviderTest, WaitForJobs) {
  const struct {
    std::vector<std::int32_t> jobs;
    int maximumPolls;
    bool result;
    bool pending;
    std::uint32_t slept;
    const char* last;
  } rows[] = {
      {{0}, 30, true, false, 0, "4 no job break..."},
      {{2, 1, 0}, 30, true, false, 2000, "4 no job break..."},
      {std::vector<std::int32_t>(10, 1), 10, true, true, 9000, "4 timeout..."},
      {{1}, 0, true, true, 0, "4 timeout..."},
      {{3, -1}, 30, false, true, 1000, "4 - job break..."},
  };
  ZOLTDataProviderFromPrinter provider = Provider();
  for (const auto& row : rows) {
    jobs = row.jobs;
    counted = 0;
    slept = 0;
    bool pending = !row.pending;
    EXPECT_EQ(provider.WaitForJobs(row.maximumPolls, pending), row.result);
    EXPECT_EQ(pending, row.pending);
    EXPECT_EQ(slept, row.slept);
    EXPECT_EQ(counted, row.jobs.size());
    EXPECT_EQ(Said(), (Lines{"4 Wait job finishes...", row.last}));
  }
}

TEST_F(ProviderTest, CollectZOLT) {
  ZOLTDataProviderFromPrinter provider = Initialized();
  printer->SetUniversalDriver(true);
  EXPECT_TRUE(provider.CollectZOLT(record));
  EXPECT_EQ(Said(), (Lines{"4 Start collecting...", "4 End collecting..."}));
  EXPECT_NE(record.BuildXml().find("<SourceType>RQD</SourceType>"), std::string::npos);

  // With gaps, without a version, with a driver of the printer's own.
  printer->SetUniversalDriver(false);
  hostVersion.reset();
  printer->codes = "/fwv err";
  record = {};
  EXPECT_TRUE(provider.CollectZOLT(record));
  EXPECT_EQ(Said().back(), "4 collected with gaps from Queue : /fwv err");
  EXPECT_EQ(record.DeviceValues(), (ElementValues{{"MDL", "collected"}}));
  EXPECT_EQ(record.BuildXml().find("SourceType"), std::string::npos);
}

TEST_F(ProviderTest, CollectSBXKeepsTheDocumentForCollectZOLT) {
  ZOLTDataProviderFromPrinter provider = Initialized();
  printer->document = "<root/>";
  EXPECT_TRUE(provider.CollectSBX(protection));
  EXPECT_EQ(protection.DeviceValues(),
            (ElementValues{{"CountryIndex", "52"}, {"GeneralSerialNumber", "SN7"}, {"MDL", "Velnora RV-2160"}}));
  EXPECT_EQ(Said(), (Lines{"4 Start SBX collecting...", "4 End SBX collecting..."}));
  EXPECT_EQ(provider.GetSBXDocument(), "<root/>");

  EXPECT_TRUE(provider.CollectSBX(protection));  // without asking the printer again
  EXPECT_TRUE(provider.CollectZOLT(record));
  EXPECT_THAT(printer->calls,
              ElementsAre("Open", "GetPPAInformation", "ReadSerialNumber", "GetZOLTInformation <root/>"));
}

TEST_F(ProviderTest, SetProtection) {
  ZOLTDataProviderFromPrinter provider = Initialized();
  EXPECT_TRUE(provider.SetProtection(true));
  sends = false;
  EXPECT_FALSE(provider.SetProtection(false));
  EXPECT_THAT(sent, ElementsAre("Queue:@PJL DEFAULT PROTECT_FROM_OVERRUN_CONSUMABLES=ON\r\n",
                                "Queue:@PJL DEFAULT PROTECT_FROM_OVERRUN_CONSUMABLES=OFF\r\n"));
  EXPECT_EQ(Said(), Lines(2, "4 [ZT] Protection On via the queue"));
  printer->usb = true;
  EXPECT_TRUE(provider.SetProtection(false));
  EXPECT_EQ(Said(), (Lines{"[ZT] Protection On using vendor command : USB",
                           "[ZT] Protection On using vendor command :USCCESS"}));
  EXPECT_THAT(printer->calls, ElementsAre("Open", "SetProtection(off)"));
  EXPECT_EQ(sent.size(), 2u);
}

}  // namespace
}  // namespace zt
