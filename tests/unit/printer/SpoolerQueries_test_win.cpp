#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "CodePage.h"
#include "KVFPrinter.h"
#include "LocalPrinters.h"
#include "PrinterFactory.h"
#include "PrinterInformation.h"
#include "QueueJobs.h"
#include "RegistryKey.h"
#include "SpoolerWorld.h"
#include "TCPIPPort.h"
#include "TraceCapture.h"
#include "WSDPort.h"

namespace zt {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

// In a script, a list of numbers gives each call the next one; the last one stays.
constexpr const char* kCommonScript = R"(
EnumPrintersW.fail = 0 0  5  0 5  0 0
EnumPrintersW.returned = 3 0xFFFFFFFF
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
[queue OnLostWSD]
listed = no
port = WSD-lost
[queue OnSecret]
listed = no
port = IP_SECRET
[queue OnUSB]
listed = no
port = USB001
[port WSD-1234]
monitor = Standard TCP/IP Port
[port WSD-0]
[port XYZ]
monitor = WSD Port
)";

struct Queue {
  const char* name;
  const char* script;
};

// Calls fail, or lie about the size and the number of what they have to tell.
constexpr Queue kBadQueues[] = {
    {"Closed", "OpenPrinterW.fail = 5"},
    {"Size", "GetPrinterW.fail = 5\nEnumJobsW.fail = 5"},
    {"Fill", "GetPrinterW.fail = 0 5\nEnumJobsW.fail = 0 5"},
    {"Small", "GetPrinterW.needed = 8\nEnumJobsW.needed = 8"},
    {"Huge", "GetPrinterW.needed = 0xFFFFFFFF\nEnumJobsW.needed = 0xFFFFFFFF"},
    {"Miscounted", "GetPrinterW.fail = 5\nEnumJobsW.returned = 0xFFFFFFFF"},
};
constexpr Queue kRoomyQueue = {"Roomy", "port = IP_1\nGetPrinterW.needed = 100000\nEnumJobsW.needed = 100000"};

struct QueueThatPrints {
  Queue queue;
  const char* trace;  // null: it prints
};
constexpr QueueThatPrints kQueuesThatPrint[] = {
    {{"NoDocument", "StartDocPrinterW.fail = 5"}, "4 [ZT] HardStop - StartDocPrinter error"},
    {{"NoWrite", "WritePrinter.fail = 5"}, "4 [ZT]Command Write error"},
    {{"ShortWrite", "WritePrinter.written = 3"}, "4 [ZT]Command Write error"},
    {{"NoPage", "StartPagePrinter.fail = 5"}, nullptr},
};

struct TCPIPRow {
  const char* port;
  const char* script;
  std::optional<TCPIPPortAddress> address;
  const char* trace;
};
const TCPIPRow kTCPIPPorts[] = {
    {"IP_1",
     "address = 192.168.1.20\nhost = printer.example\ncommunity = public",
     {{L"192.168.1.20", L"public"}},
     nullptr},
    {"IP_HOST", "host = printer.example", {{L"printer.example", L""}}, nullptr},
    {"IP_SHORT", "GetConfigInfo.hex = 4900", {{L"", L""}}, nullptr},
    {"IP_SECRET",
     "address = 192.168.1.21\ncommunity = a community of 26 letters.",
     {{L"192.168.1.21", L"a community of 26 letters."}},
     nullptr},
    {"IP_STATUS", "address = 1\nGetConfigInfo.status = 5", {}, "its monitor refused GetConfigInfo, error 5"},
    {"IP_FAIL", "address = 1\nGetConfigInfo.fail = 5", {}, "its monitor refused GetConfigInfo, error 5"},
    {"IP_CLOSED", "address = 1\nOpenPrinterW.fail = 5", {}, "its monitor cannot be opened, error 5"},
    {"LPT1:", "monitor = Local Port", {}, "its monitor refused GetConfigInfo, error 87"},
};

constexpr const char* kDeviceID = R"(UMB\UMB\1&ABC&0)";
constexpr const char* kDiscovered = "192.168.1.30";
constexpr const char* kRegistered = "192.168.1.40";

struct WSDRow {
  const char* port;       // "WSD-" goes before it, and "urn:uuid:" makes the device's PnP-X identifier of it
  const char* deviceID;   // null: the monitor tells none
  const char* discovery;  // what Function Discovery knows of the device; null: nothing
  const char* script;     // more of the port
  const char* address;
};
const WSDRow kWSDPorts[] = {
    {"1", kDeviceID, "string 192.168.1.30", "monitor = WSD Port", kDiscovered},
    {"vector", "none", "vector fe80::1 192.168.1.32", "", "fe80::1"},
    {"122", kDeviceID, "string 192.168.1.30", "DeviceID.fail = 122 0", kDiscovered},
    {"chars", kDeviceID, "string 192.168.1.30", "PnPXID.needed = 15", kDiscovered},  // counted in characters
    {"unknown", R"(umb\x\1&abc&0)", nullptr, "", kRegistered},
    {"number", kDeviceID, "number", "", kRegistered},
    {"none", kDeviceID, "none", "", kRegistered},
    {"empty", kDeviceID, "vector", "", kRegistered},
    {"Execute", kDeviceID, "fails Execute", "", kRegistered},
    {"Item", kDeviceID, "fails Item", "", kRegistered},
    {"Store", kDeviceID, "fails OpenPropertyStore", "", kRegistered},
    {"GetValue", kDeviceID, "fails GetValue", "", kRegistered},
    {"nowhere", R"(UMB\UMB\2&abc&0)", nullptr, "", ""},
    {"hostless", R"(UMB\UMB\hostless)", nullptr, "", ""},
    {"rubbish", "rubbish", nullptr, "", ""},
    {"half", "UMB\\", nullptr, "", ""},
    {"nodevice", nullptr, "string 1", "", ""},
    {"unterminated", nullptr, "string 1", "DeviceID.hex = 55004d00420078\nPnPXID.hex = 7500720", ""},
    {"status", kDeviceID, "string 1", "PnPXID.status = 122 5", ""},
    {"refused", kDeviceID, "string 1", "PnPXID.fail = 5", ""},
    {"huge", kDeviceID, "string 1", "PnPXID.needed = 0xFFFFFFFF", ""},
    {"grown", kDeviceID, "string 1", "PnPXID.needed = 4", ""},
    {"lost", nullptr, nullptr, "monitor = WSD Port\naddress = 192.168.1.50", ""},
};

std::string Section(const std::string& kind, const std::string& name, const std::string& script) {
  return "[" + kind + " " + name + "]\n" + script + "\n";
}

std::string SpoolScript() {
  std::string script = kCommonScript;
  const auto addUnlisted = [&script](const Queue& queue) {
    script += Section("queue", queue.name, std::string("listed = no\njobs = 1\n") + queue.script);
  };
  for (const Queue& queue : kBadQueues) addUnlisted(queue);
  addUnlisted(kRoomyQueue);
  for (const QueueThatPrints& row : kQueuesThatPrint) addUnlisted(row.queue);
  for (const TCPIPRow& row : kTCPIPPorts) script += Section("port", row.port, row.script);
  for (const WSDRow& row : kWSDPorts) {
    script += Section("port", std::string("WSD-") + row.port, row.script);
    if (row.deviceID) script += std::string("DeviceID = ") + row.deviceID + "\n";
    if (std::string_view(row.script).find("PnPXID.hex") == std::string_view::npos) {
      script += std::string("PnPXID = urn:uuid:") + row.port + "\n";
    }
  }
  return script;
}

std::string DiscoveryScript() {
  std::string script;
  for (const WSDRow& row : kWSDPorts) {
    if (row.discovery) script += std::string("urn:uuid:") + row.port + " = " + row.discovery + "\n";
  }
  return script + "urn:uuid:1 = string 192.168.1.31\n";  // the second device of that identifier
}

class SpoolerQueries : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    static SpoolerWorld oneForAll(SpoolScript(), DiscoveryScript());
    world = &oneForAll;
  }
  SpoolerQueries() { world->Calls(); }
  ~SpoolerQueries() override {
    std::ptrdiff_t open = 0;
    for (const std::string& call : world->Calls()) {
      const bool succeeded = call.find(" -> ok") != std::string::npos;
      if (call.starts_with("OpenPrinterW ") && succeeded) ++open;
      if (call.starts_with("ClosePrinter ") && succeeded) --open;
    }
    EXPECT_EQ(open, 0) << "handles are left";
  }

  // What was traced since the last time.
  std::vector<std::string> Traced() {
    std::vector<std::string> texts = trace.Texts();
    trace.lines.clear();
    return texts;
  }

  static inline SpoolerWorld* world = nullptr;
  TraceCapture trace;
};

TEST_F(SpoolerQueries, PrinterInformation) {
  PrinterInformation queue;
  EXPECT_FALSE(CheckQueueIsLocal(queue));
  ASSERT_TRUE(queue.ReadPrinterInfo(L"Office"));
  EXPECT_TRUE(CheckQueueIsLocal(queue));
  EXPECT_EQ(queue.DriverName(), L"Meridian Print Driver PCL");
  EXPECT_EQ(queue.ServerName(), L"\\\\print");
  EXPECT_EQ(queue.PortName(), L"IP_1");
  ASSERT_TRUE(queue.ReadPrinterInfo(L"Roomy"));
  EXPECT_EQ(queue.PortName(), L"IP_1");
  ASSERT_TRUE(queue.ReadPrinterInfo(L"Bare"));
  EXPECT_EQ(queue.PortName(), L"");
  ASSERT_TRUE(queue.ReadPrinterInfo(L"Connection"));
  EXPECT_FALSE(CheckQueueIsLocal(queue));
  EXPECT_THAT(Traced(), ElementsAre("4 Checking spooler info...", "3 Wrong QName!!! bye~", "4 Checking spooler info...",
                                    "4 Checking spooler info...", "3 Shared !!! bye~"));

  std::vector<const char*> unread = {"Absent", "", ",XcvPort IP_1"};
  for (const Queue& bad : kBadQueues) unread.push_back(bad.name);
  for (const char* name : unread) {
    ASSERT_TRUE(queue.ReadPrinterInfo(L"Connection"));
    EXPECT_FALSE(queue.ReadPrinterInfo(ToWide(name))) << name;
    EXPECT_FALSE(queue.WasRead() || queue.IsConnection()) << name;
  }
}

TEST_F(SpoolerQueries, CountQueueJobs) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(CountQueueJobs(L"Office"), 3);
  EXPECT_EQ(CountQueueJobs(L"Office"), 0);
  EXPECT_EQ(CountQueueJobs(L"Roomy"), 1);
  EXPECT_EQ(CountQueueJobs(L"Absent"), -1);
  for (const Queue& bad : kBadQueues) EXPECT_EQ(CountQueueJobs(ToWide(bad.name)), -1) << bad.name;
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "3 jobs\n0 jobs\n1 jobs\n");
  EXPECT_THAT(world->Calls(), Contains(StartsWith("EnumJobsW \"Office\" first 0 count 4294967295 level 1 size 0 ")));
}

TEST_F(SpoolerQueries, SendRawToQueue) {
  EXPECT_TRUE(SendRawToQueue(L"Office", "@PJL A\r\n"));
  EXPECT_EQ(world->Job(1), "@PJL A\r\n");
  EXPECT_THAT(
      world->Calls(),
      ElementsAre(
          "OpenPrinterW \"Office\" -> ok",
          StartsWith("StartDocPrinterW \"Office\" level 1 document \"Printer setting\" output - datatype \"RAW\""),
          StartsWith("StartPagePrinter"), StartsWith("WritePrinter \"Office\" size 8 -> ok"),
          StartsWith("EndPagePrinter"), StartsWith("EndDocPrinter"), StartsWith("ClosePrinter")));
  EXPECT_FALSE(SendRawToQueue(L"Absent", "@PJL A\r\n"));
  EXPECT_THAT(Traced(), ElementsAre("4 [ZT] HardStop - OpenPrinter error "));
  for (const QueueThatPrints& row : kQueuesThatPrint) {
    EXPECT_EQ(SendRawToQueue(ToWide(row.queue.name), "@PJL A\r\n"), row.trace == nullptr) << row.queue.name;
    EXPECT_EQ(Traced(), row.trace ? std::vector<std::string>{row.trace} : std::vector<std::string>());
    // A job that was not written is not ended either.
    const testing::Matcher<std::vector<std::string>> ends = Contains(StartsWith("EndDocPrinter"));
    EXPECT_THAT(world->Calls(), row.trace ? Not(ends) : ends);
  }
}

TEST_F(SpoolerQueries, EnumerateLocalPrinters) {
  EXPECT_THAT(EnumerateLocalPrinters(), ElementsAre(L"Office", L"Connection"));
  EXPECT_THAT(world->Calls(), Contains(StartsWith("EnumPrintersW flags 6 name - level 1 size 0 ")));
  EXPECT_THAT(EnumerateLocalPrinters(), IsEmpty()) << "no size";
  EXPECT_THAT(EnumerateLocalPrinters(), IsEmpty()) << "not filled";
  EXPECT_THAT(EnumerateLocalPrinters(), IsEmpty()) << "more than there is room for";
}

TEST_F(SpoolerQueries, ResolveTCPIPPort) {
  for (const TCPIPRow& row : kTCPIPPorts) {
    EXPECT_EQ(ResolveTCPIPPort(ToWide(row.port), L""), row.address) << row.port;
    EXPECT_EQ(Traced(), row.trace ? std::vector{"3 port " + std::string(row.port) + ": " + row.trace}
                                  : std::vector<std::string>());
  }
  EXPECT_FALSE(ResolveTCPIPPort(L"absent", L""));
  EXPECT_THAT(Traced(), ElementsAre("3 port absent: its monitor cannot be opened, error 1801"));
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
  const std::wstring umb = L"System\\CurrentControlSet\\Enum\\UMB\\UMB\\";
  RegistryKey::OpenOrCreate(umb + L"1&abc&0", KEY_SET_VALUE)
      .WriteString(L"LocationInformation", L"http://192.168.1.40:5357/a");
  RegistryKey::OpenOrCreate(umb + L"hostless", KEY_SET_VALUE).WriteString(L"LocationInformation", L"on the shelf");
  for (const WSDRow& row : kWSDPorts) {
    EXPECT_EQ(ToNarrow(ResolveWSDAddress(ToWide(std::string("WSD-") + row.port), L"")), row.address) << row.port;
    EXPECT_EQ(Traced().empty(), row.address[0] != '\0') << row.port;
  }
  ResolveWSDAddress(L"WSD-nowhere", L"");
  EXPECT_THAT(Traced(), ElementsAre("3 port WSD-nowhere: no address of device urn:uuid:nowhere"));
  EXPECT_EQ(ResolveWSDAddress(L"WSD-1", L"\\\\print"), ToWide(kDiscovered));
  EXPECT_THAT(world->Calls(), Contains("OpenPrinterW \"\\\\print\\,XcvPort WSD-1\" -> ok"));
}

// What is no WSD device after all falls through to the other roads; nothing is plugged in; the last queue has no port.
TEST_F(SpoolerQueries, CreatePrinterForQueue) {
  const std::pair<const wchar_t*, const wchar_t*> rows[] = {
      {L"OnLostWSD", L"192.168.1.50"}, {L"OnSecret", L"192.168.1.21"}, {L"OnUSB", nullptr}, {L"Bare", nullptr}};
  for (const auto& [queue, expected] : rows) {
    const std::unique_ptr<KVFPrinter> printer = CreatePrinterForQueue(queue);
    std::wstring address;
    ASSERT_EQ(printer && printer->GetPortAddress(address) == HResult::Ok, expected != nullptr) << queue;
    EXPECT_EQ(address, expected ? expected : L"");
  }
  EXPECT_THAT(Traced(), Contains("3 unusable SNMP community of port IP_SECRET"));
}

}  // namespace
}  // namespace zt
