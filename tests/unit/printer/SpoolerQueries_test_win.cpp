#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "LocalPrinters.h"
#include "PrinterFactory.h"
#include "PrinterInformation.h"
#include "QueueJobs.h"
#include "RegistryKey.h"
#include "SpoolerWorld.h"
#include "TCPIPPort.h"
#include "WSDPort.h"

namespace zt {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

// A list of numbers gives each call the next one; the last one stays.
constexpr char spoolScript[] = R"(
EnumPrintersW.fail = 0 0  5  0 5  0 0
EnumPrintersW.returned = 16 0xFFFFFFFF
EnumPortsW.fail = 5  0 5  0

[queue Office]
driver = Meridian Print Driver PCL
server = \\print
port = IP_1
jobs = 3 0
[queue Bare]
listed = nameless
[queue Connection]
attributes = 0x50
[queue Closed]
OpenPrinterW.fail = 5
[queue Size]
GetPrinterW.fail = 5
EnumJobsW.fail = 5
[queue Fill]
GetPrinterW.fail = 0 5
EnumJobsW.fail = 0 5
jobs = 1
[queue Small]
GetPrinterW.needed = 8
EnumJobsW.needed = 8
jobs = 1
[queue Huge]
GetPrinterW.needed = 0xFFFFFFFF
EnumJobsW.needed = 0xFFFFFFFF
jobs = 1
[queue Roomy]
port = IP_1
GetPrinterW.needed = 100000
EnumJobsW.needed = 100000
jobs = 1
[queue Miscounted]
EnumJobsW.returned = 0xFFFFFFFF
jobs = 1
[queue NoDocument]
StartDocPrinterW.fail = 5
[queue NoPage]
StartPagePrinter.fail = 5
[queue NoWrite]
WritePrinter.fail = 5
[queue ShortWrite]
WritePrinter.written = 3
[queue Unlisted]
listed = no
[queue OnWSD]
listed = no
driver = Velnora Meridian Print Driver
port = WSD-1
[queue OnLostWSD]
listed = no
driver = meridian print driver
port = WSD-lost
[queue OnHost]
listed = no
port = IP_HOST
[queue OnEmpty]
listed = no
port = IP_EMPTY
[queue OnSecret]
listed = no
port = IP_SECRET
[queue OnUSB]
listed = no
port = USB001
[queue OnLPT]
listed = no
port = LPT1:

[port IP_1]
address = 192.168.1.20
host = printer.example
community = public
[port IP_HOST]
host = printer.example
[port IP_EMPTY]
address =
[port IP_SECRET]
address = 192.168.1.21
community = a community of 26 letters.
[port IP_SHORT]
GetConfigInfo.hex = 4900
[port IP_STATUS]
address = 192.168.1.20
GetConfigInfo.status = 5
[port IP_FAIL]
address = 192.168.1.20
GetConfigInfo.fail = 5
[port IP_CLOSED]
address = 192.168.1.20
OpenPrinterW.fail = 5
[port LPT1:]
monitor = Local Port

[port WSD-1]
monitor = WSD Port
DeviceID = UMB\UMB\1&ABC&0
PnPXID = urn:uuid:1
[port WSD-1234]
monitor = Standard TCP/IP Port
[port WSD-0]
[port XYZ]
monitor = WSD Port

[port WSD-vector]
DeviceID = none
PnPXID = urn:uuid:vector
[port WSD-unknown]
DeviceID = umb\x\1&abc&0
PnPXID = urn:uuid:unknown
[port WSD-number]
DeviceID = UMB\UMB\1&abc&0
PnPXID = urn:uuid:number
[port WSD-none]
DeviceID = UMB\UMB\1&abc&0
PnPXID = urn:uuid:none
[port WSD-empty]
DeviceID = UMB\UMB\1&abc&0
PnPXID = urn:uuid:empty
[port WSD-Execute]
DeviceID = UMB\UMB\1&abc&0
PnPXID = urn:uuid:Execute
[port WSD-Item]
DeviceID = UMB\UMB\1&abc&0
PnPXID = urn:uuid:Item
[port WSD-Store]
DeviceID = UMB\UMB\1&abc&0
PnPXID = urn:uuid:Store
[port WSD-GetValue]
DeviceID = UMB\UMB\1&abc&0
PnPXID = urn:uuid:GetValue
[port WSD-nowhere]
DeviceID = UMB\UMB\2&abc&0
PnPXID = urn:uuid:unknown
[port WSD-hostless]
DeviceID = UMB\UMB\hostless
PnPXID = urn:uuid:unknown
[port WSD-rubbish]
DeviceID = rubbish
PnPXID = urn:uuid:unknown
[port WSD-rubbish2]
DeviceID = UMB\
PnPXID = urn:uuid:unknown
[port WSD-error122]
DeviceID = UMB\UMB\1&ABC&0
DeviceID.fail = 122 0
PnPXID = urn:uuid:1
[port WSD-unterminated]
DeviceID.hex = 55004d00420078
PnPXID.hex = 7500720
[port WSD-noDevice]
PnPXID = urn:uuid:1
[port WSD-noPnPX]
DeviceID = UMB\UMB\1&ABC&0
[port WSD-status]
DeviceID = UMB\UMB\1&ABC&0
PnPXID = urn:uuid:1
PnPXID.status = 122 5
[port WSD-huge]
DeviceID = UMB\UMB\1&ABC&0
PnPXID = urn:uuid:1
PnPXID.needed = 0xFFFFFFFF
[port WSD-lost]
monitor = WSD Port
address = 192.168.1.50
[port WSD-grown]
DeviceID = UMB\UMB\1&ABC&0
PnPXID = urn:uuid:1
PnPXID.needed = 4
)";

constexpr char discoveryScript[] = R"(
urn:uuid:1 = string 192.168.1.30
urn:uuid:1 = string 192.168.1.31
urn:uuid:vector = vector fe80::1 192.168.1.32
urn:uuid:number = number
urn:uuid:none = none
urn:uuid:empty = vector
urn:uuid:Execute = fails Execute
urn:uuid:Item = fails Item
urn:uuid:Store = fails OpenPropertyStore
urn:uuid:GetValue = fails GetValue
)";

class SpoolerQueries : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    static SpoolerWorld oneForAll(spoolScript, discoveryScript);
    world = &oneForAll;
  }
  SpoolerQueries() {
    world->Calls();
    world->TraceTexts();
  }
  ~SpoolerQueries() override {
    std::ptrdiff_t open = 0;
    for (const std::string& call : world->Calls()) {
      const bool succeeded = call.find(" -> ok") != std::string::npos;
      if (call.starts_with("OpenPrinterW ") && succeeded) ++open;
      if (call.starts_with("ClosePrinter ") && succeeded) --open;
    }
    EXPECT_EQ(open, 0) << "handles are left";
  }

  static inline SpoolerWorld* world = nullptr;
};

TEST_F(SpoolerQueries, PrinterInformation) {
  PrinterInformation queue;
  EXPECT_FALSE(queue.WasRead());
  ASSERT_TRUE(queue.ReadPrinterInfo(L"Office"));
  EXPECT_EQ(queue.DriverName(), L"Meridian Print Driver PCL");
  EXPECT_EQ(queue.ServerName(), L"\\\\print");
  EXPECT_EQ(queue.PortName(), L"IP_1");
  EXPECT_FALSE(queue.IsConnection());
  ASSERT_TRUE(queue.ReadPrinterInfo(L"Roomy"));
  EXPECT_EQ(queue.PortName(), L"IP_1");
  ASSERT_TRUE(queue.ReadPrinterInfo(L"Bare"));
  EXPECT_EQ(queue.DriverName(), L"");
  EXPECT_EQ(queue.PortName(), L"");
  for (const wchar_t* name : {L"Absent", L"", L"Closed", L"Size", L"Fill", L"Small", L"Huge", L",XcvPort IP_1"}) {
    ASSERT_TRUE(queue.ReadPrinterInfo(L"Connection"));
    EXPECT_TRUE(queue.IsConnection());
    EXPECT_FALSE(queue.ReadPrinterInfo(name)) << name;
    EXPECT_FALSE(queue.WasRead() || queue.IsConnection()) << name;
  }
}

TEST_F(SpoolerQueries, CheckQueueIsLocalTracesWhatIsWrong) {
  PrinterInformation queue;
  EXPECT_FALSE(CheckQueueIsLocal(queue));
  ASSERT_TRUE(queue.ReadPrinterInfo(L"Connection"));
  EXPECT_FALSE(CheckQueueIsLocal(queue));
  ASSERT_TRUE(queue.ReadPrinterInfo(L"Office"));
  EXPECT_TRUE(CheckQueueIsLocal(queue));
  EXPECT_THAT(world->TraceTexts(),
              ElementsAre("4 Checking spooler info...", "3 Wrong QName!!! bye~", "4 Checking spooler info...",
                          "3 Shared !!! bye~", "4 Checking spooler info..."));
}

TEST_F(SpoolerQueries, CountQueueJobs) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(CountQueueJobs(L"Office"), 3);
  EXPECT_EQ(CountQueueJobs(L"Office"), 0);
  EXPECT_EQ(CountQueueJobs(L"Roomy"), 1);
  for (const wchar_t* name : {L"Absent", L"Closed", L"Size", L"Fill", L"Small", L"Huge", L"Miscounted"}) {
    EXPECT_EQ(CountQueueJobs(name), -1) << name;
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "3 jobs\n0 jobs\n1 jobs\n");
  EXPECT_THAT(world->Calls(), Contains(StartsWith("EnumJobsW \"Office\" first 0 count 4294967295 level 1 size 0 ")));
}

TEST_F(SpoolerQueries, SendRawToQueueMakesOneJob) {
  EXPECT_TRUE(SendRawToQueue(L"Office", "@PJL A\r\n"));
  EXPECT_EQ(world->Job(1), "@PJL A\r\n");
  EXPECT_THAT(world->TraceTexts(), IsEmpty());
  EXPECT_THAT(
      world->Calls(),
      ElementsAre(
          "OpenPrinterW \"Office\" -> ok",
          StartsWith("StartDocPrinterW \"Office\" level 1 document \"Printer setting\" output - datatype \"RAW\""),
          StartsWith("StartPagePrinter"), StartsWith("WritePrinter \"Office\" size 8 -> ok"),
          StartsWith("EndPagePrinter"), StartsWith("EndDocPrinter"), StartsWith("ClosePrinter")));
}

TEST_F(SpoolerQueries, SendRawToQueueTracesWhatFails) {
  const struct {
    const wchar_t* queue;
    const char* trace;
  } rows[] = {
      {L"Absent", "4 [ZT] HardStop - OpenPrinter error "},
      {L"NoDocument", "4 [ZT] HardStop - StartDocPrinter error"},
      {L"NoWrite", "4 [ZT]Command Write error"},
      {L"ShortWrite", "4 [ZT]Command Write error"},
  };
  for (const auto& row : rows) {
    EXPECT_FALSE(SendRawToQueue(row.queue, "@PJL A\r\n"));
    EXPECT_THAT(world->TraceTexts(), ElementsAre(row.trace));
  }
  EXPECT_TRUE(SendRawToQueue(L"NoPage", "@PJL A\r\n")) << "the start of the page is not looked at";
}

TEST_F(SpoolerQueries, AFailedWriteLeavesTheDocumentUnended) {
  EXPECT_FALSE(SendRawToQueue(L"NoWrite", "@PJL A\r\n"));
  EXPECT_THAT(world->Calls(), Not(Contains(StartsWith("EndDocPrinter"))));
}

TEST_F(SpoolerQueries, EnumerateLocalPrinters) {
  const std::vector<std::wstring> names = EnumerateLocalPrinters();
  EXPECT_EQ(names.size(), 15u) << "sixteen are listed, one has no name";
  EXPECT_THAT(names, Contains(L"Office"));
  EXPECT_THAT(names, Not(Contains(L"Unlisted")));
  EXPECT_THAT(world->Calls(), Contains(StartsWith("EnumPrintersW flags 6 name - level 1 size 0 ")));
  EXPECT_THAT(EnumerateLocalPrinters(), IsEmpty()) << "no size";
  EXPECT_THAT(EnumerateLocalPrinters(), IsEmpty()) << "not filled";
  EXPECT_THAT(EnumerateLocalPrinters(), IsEmpty()) << "more than there is room for";
}

TEST_F(SpoolerQueries, ResolveTCPIPPort) {
  using Address = std::optional<TCPIPPortAddress>;
  const struct {
    const wchar_t* port;
    Address address;
  } rows[] = {
      {L"IP_1", {{L"192.168.1.20", L"public"}}},
      {L"IP_HOST", {{L"printer.example", L""}}},
      {L"IP_EMPTY", {{L"", L""}}},
      {L"IP_SHORT", {{L"", L""}}},
      {L"IP_STATUS", {}},
      {L"IP_FAIL", {}},
      {L"IP_CLOSED", {}},
      {L"LPT1:", {}},
      {L"absent", {}},
  };
  for (const auto& row : rows) EXPECT_EQ(ResolveTCPIPPort(row.port, L""), row.address) << row.port;
  EXPECT_THAT(world->TraceTexts(), ElementsAre("3 port IP_STATUS: its monitor refused GetConfigInfo, error 5",
                                               "3 port IP_FAIL: its monitor refused GetConfigInfo, error 5",
                                               "3 port IP_CLOSED: its monitor cannot be opened, error 5",
                                               "3 port LPT1:: its monitor refused GetConfigInfo, error 87",
                                               "3 port absent: its monitor cannot be opened, error 1801"));
  EXPECT_TRUE(ResolveTCPIPPort(L"IP_1", L"\\\\print"));
  const std::vector<std::string> calls = world->Calls();
  EXPECT_THAT(calls, Contains("OpenPrinterW \",XcvPort IP_1\" access 2 datatype - -> ok"));
  EXPECT_THAT(calls, Contains("OpenPrinterW \"\\\\print\\,XcvPort IP_1\" access 2 datatype - -> ok"));
  EXPECT_THAT(calls, Contains(HasSubstr("XcvDataW \"IP_1\" \"GetConfigInfo\" in 132 version 1 out 964 -> ok")));
}

TEST_F(SpoolerQueries, IsWSDPort) {
  EXPECT_FALSE(IsWSDPort(L"WSD-1")) << "no size";
  EXPECT_FALSE(IsWSDPort(L"WSD-1")) << "not filled";
  EXPECT_TRUE(IsWSDPort(L"WSD-1"));
  // Another monitor, no monitor, another name, another case, no such port.
  for (const wchar_t* port : {L"WSD-1234", L"WSD-0", L"XYZ", L"wsd-1", L"WSD-12", L"WSD", L"", L"IP_1"}) {
    EXPECT_FALSE(IsWSDPort(port)) << port;
  }
}

TEST_F(SpoolerQueries, ResolveWSDAddress) {
  RegistryKey::OpenOrCreate(L"System\\CurrentControlSet\\Enum\\UMB\\UMB\\1&abc&0", KEY_SET_VALUE)
      .WriteString(L"LocationInformation", L"http://192.168.1.40:5357/a");
  RegistryKey::OpenOrCreate(L"System\\CurrentControlSet\\Enum\\UMB\\UMB\\hostless", KEY_SET_VALUE)
      .WriteString(L"LocationInformation", L"on the shelf");
  const std::wstring discovered = L"192.168.1.30";
  const std::wstring registered = L"192.168.1.40";
  const struct {
    const wchar_t* port;
    std::wstring address;
  } rows[] = {
      {L"WSD-1", discovered},        {L"WSD-error122", discovered},
      {L"WSD-vector", L"fe80::1"},   {L"WSD-unknown", registered},
      {L"WSD-number", registered},   {L"WSD-none", registered},
      {L"WSD-empty", registered},    {L"WSD-Execute", registered},
      {L"WSD-Item", registered},     {L"WSD-Store", registered},
      {L"WSD-GetValue", registered}, {L"WSD-nowhere", L""},
      {L"WSD-hostless", L""},        {L"WSD-rubbish", L""},
      {L"WSD-rubbish2", L""},        {L"WSD-noDevice", L""},
      {L"WSD-unterminated", L""},    {L"WSD-noPnPX", L""},
      {L"WSD-status", L""},          {L"WSD-huge", L""},
      {L"WSD-grown", L""},           {L"absent", L""},
  };
  for (const auto& row : rows) EXPECT_EQ(ResolveWSDAddress(row.port, L""), row.address) << row.port;
  EXPECT_THAT(world->TraceTexts(), Contains("3 port WSD-nowhere: no address of device urn:uuid:unknown"));
  EXPECT_EQ(ResolveWSDAddress(L"WSD-1", L"\\\\print"), discovered);
  EXPECT_THAT(world->Calls(), Contains("OpenPrinterW \"\\\\print\\,XcvPort WSD-1\" -> ok"));
}

TEST_F(SpoolerQueries, CreatePrinterForQueue) {
  const struct {
    const wchar_t* queue;
    const wchar_t* address;  // null: no printer
    bool universalDriver;
  } rows[] = {
      {L"OnWSD", L"192.168.1.30", true},
      {L"OnLostWSD", L"192.168.1.50", false},  // no address as a WSD port; the driver is in another case
      {L"Office", L"192.168.1.20", true},
      {L"OnHost", L"printer.example", false},
      {L"OnEmpty", L"", false},
      {L"OnSecret", L"192.168.1.21", false},
      {L"OnUSB", nullptr, false},  // nothing is plugged in
      {L"OnLPT", nullptr, false},
      {L"Bare", nullptr, false},  // has no port
      {L"Absent", nullptr, false},
      {L"", nullptr, false},
  };
  for (const auto& row : rows) {
    const std::unique_ptr<KVFPrinter> printer = CreatePrinterForQueue(row.queue);
    ASSERT_EQ(printer != nullptr, row.address != nullptr) << row.queue;
    if (!printer) continue;
    std::wstring address;
    EXPECT_EQ(printer->GetPortAddress(address), HResult::Ok);
    EXPECT_EQ(address, row.address);
    EXPECT_EQ(printer->QueueName(), row.queue);
    EXPECT_EQ(printer->IsUniversalDriver(), row.universalDriver) << row.queue;
    EXPECT_FALSE(printer->IsUSB());
  }
  EXPECT_THAT(world->TraceTexts(), Contains("3 unusable SNMP community of port IP_SECRET"));
}

}  // namespace
}  // namespace zt
