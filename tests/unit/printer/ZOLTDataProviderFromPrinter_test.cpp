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
             .sleep = [this](std::uint32_t milliseconds) { slept += milliseconds; }}};
  }

  FakePrinter* printer = nullptr;
  std::vector<std::int32_t> jobs;
  std::size_t counted = 0;
  std::vector<std::string> sent;
  bool sends = true;
  std::optional<std::string> hostVersion = "3.2.1";
  std::uint32_t slept = 0;
  TraceCapture trace;
};

TEST_F(ProviderTest, KeepsTheAddressOfThePrinter) {
  EXPECT_EQ(Provider().GetPrinterAddress(), "10.0.0.7");
  EXPECT_EQ(Provider().GetQueueName(), L"Queue");
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(ProviderTest, QueueWithoutAPrinter) {
  EXPECT_EQ(WithPrinter(nullptr).GetPrinterAddress(), "");
  EXPECT_EQ(trace.Texts(), Lines{"2 Can't get address from QName : Queue!!! Bye~"});
}

TEST_F(ProviderTest, PrinterWithoutAnAddress) {
  auto made = std::make_unique<FakePrinter>(kDeviceID);
  made->address.reset();
  EXPECT_EQ(WithPrinter(std::move(made)).GetPrinterAddress(), "");
  EXPECT_EQ(trace.Texts(), Lines{"2 Can't get address from Queue!!! Bye~"});
}

TEST_F(ProviderTest, InitializeOpensOnceAndChecksSupport) {
  ZOLTDataProviderFromPrinter provider = Provider();
  EXPECT_TRUE(provider.Initialize(false));
  EXPECT_THAT(trace.Texts(), IsEmpty());
  EXPECT_TRUE(provider.Initialize(true));
  EXPECT_EQ(trace.Texts(),
            (Lines{"4 the printer has been already initialized.", "4 Checking ZOLT support from device..."}));
  EXPECT_THAT(printer->calls, ElementsAre("Open"));
}

TEST_F(ProviderTest, InitializeOfAPrinterWithoutSupport) {
  ZOLTDataProviderFromPrinter provider = Provider("CMD:PJL;");
  EXPECT_FALSE(provider.Initialize(true));
  EXPECT_EQ(trace.Texts(), (Lines{"4 Checking ZOLT support from device...", "4 ZOLT is not supported!"}));
  EXPECT_TRUE(provider.Initialize(false));  // it is open all the same
}

TEST_F(ProviderTest, InitializeOfAPrinterThatDoesNotOpen) {
  ZOLTDataProviderFromPrinter provider = Provider();
  printer->opens = false;
  EXPECT_FALSE(provider.Initialize(true));
  EXPECT_EQ(trace.Texts(), Lines{"4 failed to initialize printer"});
  printer->opens = true;
  EXPECT_TRUE(provider.Initialize(true));
}

// What the operations that need an open printer do without one.
TEST_F(ProviderTest, OperationsNeedAnOpenPrinter) {
  using Operation = bool (*)(ZOLTDataProviderFromPrinter&);
  struct Row {
    Operation run;
    Lines before;  // traced before the printer is looked for
  };
  const Row rows[] = {
      {[](auto& p) {
         std::string text;
         return p.GetSerialNumber(text);
       },
       {}},
      {[](auto& p) {
         ZOLTInformation record;
         return p.CollectZOLT(record);
       },
       {"4 Start collecting..."}},
      {[](auto& p) {
         PPAInformation record;
         return p.CollectSBX(record);
       },
       {"4 Start SBX collecting..."}},
      {[](auto& p) { return p.CheckSBXSupport(nullptr); }, {}},  // looked for before the output is
      {[](auto& p) { return p.SetProtection(true); }, {}},
      {[](auto& p) {
         std::string text;
         return p.GetModelName(text);
       },
       {}},
      {[](auto& p) { return p.GetTonerLife(nullptr, nullptr); }, {}},
      {[](auto& p) {
         ZOLTInformation record;
         return p.GetHostVersion(record);
       },
       {}},
      {[](auto& p) {
         std::string text;
         return p.GetCountryIndex(text);
       },
       {}},
      {[](auto& p) { return p.ExtendedIDContains("x"); }, {}},
  };
  ZOLTDataProviderFromPrinter closed = Provider();
  ZOLTDataProviderFromPrinter none = WithPrinter(nullptr);
  for (const Row& row : rows) {
    Lines expected = row.before;
    expected.push_back("4 failed to initialize printer");
    trace.lines.clear();
    EXPECT_FALSE(row.run(closed));
    EXPECT_EQ(trace.Texts(), expected);

    expected.back() = "4 printer invalid";
    trace.lines.clear();
    EXPECT_FALSE(row.run(none));
    EXPECT_EQ(trace.Texts(), expected);
  }
  EXPECT_THAT(printer->calls, IsEmpty());
  EXPECT_THAT(trace.debug, IsEmpty());
  EXPECT_THAT(sent, IsEmpty());

  trace.lines.clear();
  EXPECT_FALSE(none.Initialize(false));
  EXPECT_EQ(trace.Texts(), Lines{"4 printer invalid"});
}

TEST_F(ProviderTest, SerialNumbers) {
  struct Row {
    std::optional<std::string> answer;
    std::string serialNumber;
    bool result;
  };
  const Row rows[] = {
      {"ABC123\r\n", "ABC123", true},
      {"MPS-MODE", "MPS-MODE", false},
      {"MPS-MOD", "MPS-MOD", true},
      {"MPS-MODE2", "MPS-MODE2", true},
      {"", "", true},
      {" \r\n", "", true},
  };
  for (const Row& row : rows) {
    ZOLTDataProviderFromPrinter provider = Initialized();
    printer->serialNumber = row.answer;
    std::string serialNumber;
    trace.lines.clear();
    EXPECT_EQ(provider.GetSerialNumber(serialNumber), row.result) << *row.answer;
    EXPECT_EQ(serialNumber, row.serialNumber);
    EXPECT_EQ(trace.Texts(), Lines{"4 Get Serial number..."});
    provider.GetSerialNumber(serialNumber);
    EXPECT_THAT(printer->calls, ElementsAre("Open", "ReadSerialNumber"));  // asked once
  }

  ZOLTDataProviderFromPrinter provider = Initialized();
  printer->serialNumber.reset();
  std::string serialNumber = "old";
  trace.lines.clear();
  EXPECT_FALSE(provider.GetSerialNumber(serialNumber));
  EXPECT_EQ(serialNumber, "old");
  EXPECT_EQ(trace.Texts(), (Lines{"4 Get Serial number...", "2 Serial Number is missing!!!"}));
}

TEST_F(ProviderTest, WaitForJobs) {
  struct Row {
    std::vector<std::int32_t> jobs;
    int maximumPolls;
    bool result;
    bool pending;
    std::uint32_t slept;
    const char* last;
  };
  const Row rows[] = {
      {{0}, 30, true, false, 0, "4 no job break..."},
      {{2, 1, 0}, 30, true, false, 2000, "4 no job break..."},
      {std::vector<std::int32_t>(10, 1), 10, true, true, 9000, "4 timeout..."},
      {{1}, 1, true, true, 0, "4 timeout..."},
      {{1}, 0, true, true, 0, "4 timeout..."},
      {{1}, -5, true, true, 0, "4 timeout..."},
      {{0}, 0, true, false, 0, "4 no job break..."},
      {{-1}, 30, false, true, 0, "4 - job break..."},
      {{3, -1}, 30, false, true, 1000, "4 - job break..."},
  };
  for (const Row& row : rows) {
    jobs = row.jobs;
    counted = 0;
    slept = 0;
    trace.lines.clear();
    bool pending = !row.pending;
    ZOLTDataProviderFromPrinter provider = Provider();
    EXPECT_EQ(provider.WaitForJobs(row.maximumPolls, pending), row.result);
    EXPECT_EQ(pending, row.pending);
    EXPECT_EQ(slept, row.slept);
    EXPECT_EQ(counted, row.jobs.size());
    EXPECT_EQ(trace.Texts(), (Lines{"4 Wait job finishes...", row.last}));
  }
}

TEST_F(ProviderTest, CollectZOLT) {
  ZOLTDataProviderFromPrinter provider = Initialized();
  printer->SetUniversalDriver(true);
  ZOLTInformation record;
  EXPECT_TRUE(provider.CollectZOLT(record));
  EXPECT_EQ(trace.Texts(), (Lines{"4 Start collecting...", "4 End collecting..."}));
  EXPECT_EQ(record.DeviceValues(), (ElementValues{{"HostVersion", "3.2.1"}, {"MDL", "collected"}}));
  EXPECT_NE(record.BuildXml().find("<SourceType>RQD</SourceType>"), std::string::npos);
}

TEST_F(ProviderTest, CollectZOLTWithGapsAndWithoutAHostVersion) {
  ZOLTDataProviderFromPrinter provider = Initialized();
  hostVersion.reset();
  printer->codes = "/fwv err";
  ZOLTInformation record;
  EXPECT_TRUE(provider.CollectZOLT(record));
  EXPECT_EQ(trace.Texts(),
            (Lines{"4 Start collecting...", "4 End collecting...", "4 collected with gaps from Queue : /fwv err"}));
  EXPECT_EQ(record.DeviceValues(), (ElementValues{{"MDL", "collected"}}));
  EXPECT_EQ(record.BuildXml().find("SourceType"), std::string::npos);
}

TEST_F(ProviderTest, FailedCollectionTracesItsCodesOnce) {
  ZOLTDataProviderFromPrinter provider = Initialized();
  printer->codes = "/no toner pub/serialno err";
  printer->collectResult = HResult::Fail;
  ZOLTInformation record;
  EXPECT_FALSE(provider.CollectZOLT(record));
  EXPECT_EQ(trace.Texts(), (Lines{"4 Start collecting...", "4 End collecting...",
                                  "3 failed to collect from Queue : /no toner pub/serialno err"}));
  trace.lines.clear();
  printer->codes = "/xml error" + std::string(5000, 'x');
  EXPECT_FALSE(provider.CollectZOLT(record));
  EXPECT_EQ(trace.Texts().back(), "3 failed to collect from Queue : /xml error" + std::string(990, 'x'));
}

TEST_F(ProviderTest, CollectSBXKeepsTheDocumentForCollectZOLT) {
  ZOLTDataProviderFromPrinter provider = Initialized();
  printer->document = "<root/>";
  PPAInformation record;
  EXPECT_TRUE(provider.CollectSBX(record));
  EXPECT_EQ(
      record.DeviceValues(),
      (ElementValues{
          {"CountryIndex", "52"}, {"GeneralSerialNumber", "SN7"}, {"MDL", "Velnora RV-2160"}, {"SBX", "SBXOFF"}}));
  EXPECT_EQ(trace.Texts(), (Lines{"4 Start SBX collecting...", "4 End SBX collecting..."}));
  EXPECT_EQ(provider.GetSBXDocument(), "<root/>");

  EXPECT_TRUE(provider.CollectSBX(record));  // without asking the printer again
  ZOLTInformation volume;
  EXPECT_TRUE(provider.CollectZOLT(volume));
  EXPECT_THAT(printer->calls,
              ElementsAre("Open", "GetPPAInformation", "ReadSerialNumber", "GetZOLTInformation <root/>"));
}

TEST_F(ProviderTest, FailedCollectSBXKeepsNothing) {
  ZOLTDataProviderFromPrinter provider = Initialized();
  printer->document = "<root/>";
  printer->codes = "/lock failed";
  printer->collectResult = HResult::Fail;
  PPAInformation record;
  EXPECT_FALSE(provider.CollectSBX(record));
  EXPECT_EQ(provider.GetSBXDocument(), "");
  EXPECT_EQ(trace.Texts().back(), "3 failed to collect from Queue : /lock failed");
}

TEST_F(ProviderTest, CheckSBXSupport) {
  ZOLTDataProviderFromPrinter provider = Initialized();
  std::uint32_t state = 9;
  EXPECT_TRUE(provider.CheckSBXSupport(&state));
  EXPECT_EQ(state, 2u);
  EXPECT_THAT(trace.debug, ElementsAre("Checking SBX support from device...", "[ZT] SBX support value = 2"));
  EXPECT_THAT(trace.lines, IsEmpty());
  EXPECT_FALSE(provider.CheckSBXSupport(nullptr));

  printer->sbxResult = HResult::False;
  EXPECT_FALSE(provider.CheckSBXSupport(&state));
  EXPECT_EQ(trace.Texts(), Lines{"4 SBX is not supported!"});
}

TEST_F(ProviderTest, SetProtectionOverTheQueue) {
  ZOLTDataProviderFromPrinter provider = Initialized();
  EXPECT_TRUE(provider.SetProtection(true));
  EXPECT_TRUE(provider.SetProtection(false));
  sends = false;
  EXPECT_FALSE(provider.SetProtection(false));
  ASSERT_EQ(sent.size(), 3u);
  EXPECT_EQ(sent[0], "Queue:@PJL DEFAULT PROTECT_FROM_OVERRUN_CONSUMABLES=ON\r\n");
  EXPECT_EQ(sent[1], "Queue:@PJL DEFAULT PROTECT_FROM_OVERRUN_CONSUMABLES=OFF\r\n");
  EXPECT_EQ(trace.Texts(), Lines(3, "4 [ZT] Protection On via the queue"));
  EXPECT_THAT(printer->calls, ElementsAre("Open"));
}

TEST_F(ProviderTest, SetProtectionOverUSB) {
  ZOLTDataProviderFromPrinter provider = Initialized();
  printer->usb = true;
  EXPECT_TRUE(provider.SetProtection(false));
  EXPECT_THAT(trace.debug, ElementsAre("[ZT] Protection On using vendor command : USB",
                                       "[ZT] Protection On using vendor command :USCCESS"));
  printer->protectionResult = HResult::Fail;
  EXPECT_FALSE(provider.SetProtection(true));
  EXPECT_EQ(trace.debug.size(), 3u);
  EXPECT_THAT(printer->calls, ElementsAre("Open", "SetProtection(off)", "SetProtection(on)"));
  EXPECT_THAT(sent, IsEmpty());
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(ProviderTest, SendRawToQueueNeedsNoPrinter) {
  ZOLTDataProviderFromPrinter provider = WithPrinter(nullptr);
  EXPECT_FALSE(provider.SendRawToQueue(nullptr));
  EXPECT_TRUE(provider.SendRawToQueue("text"));
  EXPECT_THAT(sent, ElementsAre("Queue:text"));
}

TEST_F(ProviderTest, GetModelName) {
  std::string model;
  EXPECT_TRUE(Initialized().GetModelName(model));
  EXPECT_EQ(model, "Velnora RV-2160");
  EXPECT_FALSE(Initialized("CMD:ZOLT").GetModelName(model));
  EXPECT_EQ(trace.Texts(), (Lines{"4 Get ModelName...", "4 Get ModelName...", "2 ModelName is missing!!!"}));
}

TEST_F(ProviderTest, GetTonerLife) {
  ZOLTDataProviderFromPrinter provider = Initialized();
  std::uint32_t life = 0;
  std::uint32_t changes = 0;
  EXPECT_FALSE(provider.GetTonerLife(nullptr, &changes));
  EXPECT_FALSE(provider.GetTonerLife(&life, nullptr));
  EXPECT_THAT(trace.lines, IsEmpty());
  EXPECT_FALSE(provider.GetTonerLife(&life, &changes));
  printer->counters = {150, 3};
  EXPECT_TRUE(provider.GetTonerLife(&life, &changes));
  EXPECT_EQ(std::pair(life, changes), std::pair(150u, 3u));
  EXPECT_EQ(trace.Texts(),
            (Lines{"4 Get  toner life information and if it change...", "2  toner life information is missing!!!",
                   "4 Get  toner life information and if it change..."}));
}

TEST_F(ProviderTest, GetCountryIndex) {
  ZOLTDataProviderFromPrinter provider = Initialized();
  std::string index;
  EXPECT_TRUE(provider.GetCountryIndex(index));
  EXPECT_EQ(index, "52");
  EXPECT_THAT(trace.debug, ElementsAre("[ZT] Get country Index from ext.", "[ZT]  Country Index from ext = 52"));

  // A printer without an index answers Fail, which counts as an answer; the caller looks at the text.
  index.clear();
  printer->countryResult = HResult::Fail;
  EXPECT_TRUE(provider.GetCountryIndex(index));
  EXPECT_EQ(trace.debug.back(), "[ZT]  Country Index from ext = ");
  EXPECT_THAT(trace.lines, IsEmpty());

  printer->countryResult = HResult::False;
  EXPECT_FALSE(provider.GetCountryIndex(index));
  EXPECT_EQ(trace.Texts(), Lines{"4 [ZT] Country Index from ext not supported!"});
}

TEST_F(ProviderTest, ExtendedIDContains) {
  ZOLTDataProviderFromPrinter provider = Initialized();
  printer->extendedID = "CMD:A,B;";
  EXPECT_TRUE(provider.ExtendedIDContains("A,B"));
  EXPECT_FALSE(provider.ExtendedIDContains("B,A"));
  EXPECT_THAT(trace.debug, ElementsAre("[ZT] Get device ID Ext.", "[ZT] Get device ID Ext."));
  printer->extendedResult = HResult::False;
  EXPECT_FALSE(provider.ExtendedIDContains("A"));
  EXPECT_EQ(trace.Texts(), Lines{"4 [ZT] Failed get device id ext"});
}

}  // namespace
}  // namespace zt
