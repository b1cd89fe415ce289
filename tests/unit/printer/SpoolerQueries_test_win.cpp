#include <windows.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CodePage.h"
#include "KVFPrinter.h"
#include "LocalPrinters.h"
#include "PrinterFactory.h"
#include "PrinterInformation.h"
#include "QueueJobs.h"
#include "RegistryKey.h"
#include "TCPIPPort.h"
#include "TempFolder.h"
#include "TraceCapture.h"
#include "WSDPort.h"

namespace zt {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// In a script, a list of numbers gives each call the next one; the last one stays.
constexpr const char* kCommonScript = R"(
EnumPrintersW.fail = 0 0  5  0 5  0 0
EnumPrintersW.returned = 2 0xFFFFFFFF
EnumPortsW.fail = 5  0 5  0
[queue Office]
driver = Meridian Print Driver PCL
server = \\print
port = IP_1
GetPrinterW.needed = 100000
EnumJobsW.needed = 100000
jobs = 3
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
[port WSD-lost]
monitor = WSD Port
address = 192.168.1.50
[port XYZ]
monitor = WSD Port
[port IP_1]
address = 192.168.1.20
[port IP_SHORT]
GetConfigInfo.hex = 4900
[port IP_SECRET]
address = 192.168.1.21
community = a community of 26 letters.
[port IP_STATUS]
GetConfigInfo.status = 5
[port IP_CLOSED]
OpenPrinterW.fail = 5
[port LPT1:]
monitor = Local Port
)";

// Calls fail, or lie about the size and the number of what they have to tell.
constexpr std::pair<const char*, const char*> kBadQueues[] = {
    {"Closed", "OpenPrinterW.fail = 5"},
    {"Size", "GetPrinterW.fail = 5\nEnumJobsW.fail = 5"},
    {"Fill", "GetPrinterW.fail = 0 5\nEnumJobsW.fail = 0 5"},
    {"Small", "GetPrinterW.needed = 8\nEnumJobsW.needed = 8"},
    {"Huge", "GetPrinterW.needed = 0xFFFFFFFF\nEnumJobsW.needed = 0xFFFFFFFF"},
    {"Miscounted", "GetPrinterW.fail = 5\nEnumJobsW.returned = 0xFFFFFFFF"},
};

// A queue, its script, and what is traced of it; nothing where it prints.
constexpr std::tuple<const char*, const char*, const char*> kPrintingQueues[] = {
    {"NoDocument", "StartDocPrinterW.fail = 5", "4 [ZT] HardStop - StartDocPrinter error"},
    {"NoWrite", "WritePrinter.fail = 5", "4 [ZT]Command Write error"},
    {"ShortWrite", "WritePrinter.written = 3", "4 [ZT]Command Write error"},
    {"NoPage", "StartPagePrinter.fail = 5", nullptr},
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
    {"empty", kDeviceID, "vector", "", kRegistered},
    {"Execute", kDeviceID, "fails Execute", "", kRegistered},
    {"Item", kDeviceID, "fails Item", "", kRegistered},
    {"Store", kDeviceID, "fails OpenPropertyStore", "", kRegistered},
    {"GetValue", kDeviceID, "fails GetValue", "", kRegistered},
    {"hostless", R"(UMB\UMB\hostless)", nullptr, "", ""},
    {"rubbish", "rubbish", nullptr, "", ""},
    {"half", "UMB\\", nullptr, "", ""},
    {"nodevice", nullptr, "string 1", "", ""},
    {"unterminated", nullptr, "string 1", "DeviceID.hex = 55004d00420078\nPnPXID.hex = 7500720", ""},
    {"status", kDeviceID, "string 1", "PnPXID.status = 122 5", ""},
    {"huge", kDeviceID, "string 1", "PnPXID.needed = 0xFFFFFFFF", ""},
    {"grown", kDeviceID, "string 1", "PnPXID.needed = 4", ""},
};

// The simulated spooler and Function Discovery lie beside this program; their scripts serve all tests.
class SpoolerQueries : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    static const TempFolder folder;
    std::string spooler = kCommonScript;
    std::string discovery;
    const auto add = [&](const char* queue, const char* script) {
      spooler += std::string("[queue ") + queue + "]\nlisted = no\njobs = 1\n" + script + "\n";
    };
    for (const auto& [name, script] : kBadQueues) add(name, script);
    for (const auto& [name, script, traced] : kPrintingQueues) add(name, script);
    for (const WSDRow& row : kWSDPorts) {
      const std::string id = std::string("urn:uuid:") + row.port;
      spooler += std::string("[port WSD-") + row.port + "]\n" + row.script + "\n";
      if (row.deviceID) spooler += std::string("DeviceID = ") + row.deviceID + "\n";
      if (std::string_view(row.port) != "unterminated") spooler += "PnPXID = " + id + "\n";
      if (row.discovery) discovery += id + " = " + row.discovery + "\n";
    }
    folder.Write(L"winspool.ini", spooler);
    folder.Write(L"function-discovery.ini", discovery);
    SetEnvironmentVariableW(L"ZT_SPOOL_SCRIPT", folder.Path(L"winspool.ini").c_str());
    SetEnvironmentVariableW(L"ZT_SPOOL_FOLDER", folder.Path(L".").c_str());
    SetEnvironmentVariableW(L"ZT_DISCOVERY_SCRIPT", folder.Path(L"function-discovery.ini").c_str());
    // This program's own copy of Function Discovery becomes that of the system.
    const HMODULE library = LoadLibraryW(L"function-discovery.dll");
    const auto registerServer = reinterpret_cast<void (*)()>(
        reinterpret_cast<void*>(library ? GetProcAddress(library, "DllRegisterServer") : nullptr));
    if (registerServer) registerServer();
  }

  // What was traced since the last time.
  std::vector<std::string> Traced() {
    std::vector<std::string> texts = trace.Texts();
    trace.lines.clear();
    return texts;
  }

  TraceCapture trace;
};

TEST_F(SpoolerQueries, PrinterInformation) {
  PrinterInformation queue;
  ASSERT_TRUE(queue.ReadPrinterInfo(L"Office"));
  EXPECT_EQ(queue.DriverName(), L"Meridian Print Driver PCL");
  EXPECT_EQ(queue.ServerName(), L"\\\\print");
  EXPECT_EQ(queue.PortName(), L"IP_1");
  EXPECT_TRUE(CheckQueueIsLocal(queue));
  for (const char* name : {"Closed", "Size", "Fill", "Small", "Huge", "Absent", "", ",XcvPort IP_1"}) {
    ASSERT_TRUE(queue.ReadPrinterInfo(L"Connection"));
    EXPECT_FALSE(CheckQueueIsLocal(queue));
    EXPECT_EQ(Traced().back(), "3 Shared !!! bye~");
    EXPECT_FALSE(queue.ReadPrinterInfo(ToWide(name))) << name;
    EXPECT_FALSE(queue.WasRead() || queue.IsConnection()) << name;
  }
  EXPECT_FALSE(CheckQueueIsLocal(queue));
  EXPECT_EQ(Traced().back(), "3 Wrong QName!!! bye~");
}

TEST_F(SpoolerQueries, CountQueueJobs) {
  EXPECT_EQ(CountQueueJobs(L"Office"), 3);
  for (const auto& [name, script] : kBadQueues) EXPECT_EQ(CountQueueJobs(ToWide(name)), -1) << name;
}

// The job itself is seen end to end.
TEST_F(SpoolerQueries, SendRawToQueue) {
  EXPECT_FALSE(SendRawToQueue(L"Absent", "@PJL A\r\n"));
  EXPECT_THAT(Traced(), ElementsAre("4 [ZT] HardStop - OpenPrinter error "));
  for (const auto& [name, script, traced] : kPrintingQueues) {
    EXPECT_EQ(SendRawToQueue(ToWide(name), "@PJL A\r\n"), traced == nullptr) << name;
    EXPECT_EQ(Traced(), traced ? std::vector<std::string>{traced} : std::vector<std::string>()) << name;
  }
}

TEST_F(SpoolerQueries, EnumerateLocalPrinters) {
  EXPECT_THAT(EnumerateLocalPrinters(), ElementsAre(L"Office", L"Connection"));
  for (const char* why : {"no size", "not filled", "more than there is room for"}) {
    EXPECT_THAT(EnumerateLocalPrinters(), IsEmpty()) << why;
  }
}

TEST_F(SpoolerQueries, ResolveTCPIPPort) {
  EXPECT_EQ(ResolveTCPIPPort(L"IP_SHORT", L""), (TCPIPPortAddress{L"", L""}));
  EXPECT_TRUE(ResolveTCPIPPort(L"IP_1", L"\\\\print"));
  EXPECT_THAT(Traced(), IsEmpty());
  for (const char* port : {"IP_STATUS", "IP_CLOSED", "LPT1:"})
    EXPECT_FALSE(ResolveTCPIPPort(ToWide(port), L"")) << port;
  EXPECT_THAT(Traced(), ElementsAre("3 port IP_STATUS: its monitor refused GetConfigInfo, error 5",
                                    "3 port IP_CLOSED: its monitor cannot be opened, error 5",
                                    "3 port LPT1:: its monitor refused GetConfigInfo, error 87"));
}

TEST_F(SpoolerQueries, IsWSDPort) {
  EXPECT_FALSE(IsWSDPort(L"WSD-1")) << "no size";
  EXPECT_FALSE(IsWSDPort(L"WSD-1")) << "not filled";
  EXPECT_TRUE(IsWSDPort(L"WSD-1"));
  // Another monitor, another name, another case, no such port.
  for (const wchar_t* port : {L"WSD-1234", L"XYZ", L"wsd-1", L"WSD-12", L""}) EXPECT_FALSE(IsWSDPort(port)) << port;
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
}

// What is no WSD device after all falls through to the other roads; nothing is plugged in.
TEST_F(SpoolerQueries, CreatePrinterForQueue) {
  const std::pair<const wchar_t*, const wchar_t*> rows[] = {
      {L"OnLostWSD", L"192.168.1.50"}, {L"OnSecret", L"192.168.1.21"}, {L"OnUSB", nullptr}, {L"Connection", nullptr}};
  for (const auto& [queue, expected] : rows) {
    const std::unique_ptr<KVFPrinter> printer = CreatePrinterForQueue(queue);
    std::wstring address;
    ASSERT_EQ(printer && printer->GetPortAddress(address) == HResult::Ok, expected != nullptr) << queue;
    EXPECT_EQ(address, expected ? expected : L"");
  }
  EXPECT_THAT(Traced(), testing::Contains(HasSubstr("unusable SNMP community of port IP_SECRET")));
}

}  // namespace
}  // namespace zt
