#include "PrinterFactory.h"

#include <windows.h>

#include <utility>

#include "CodePage.h"
#include "DeviceMonitor.h"
#include "HttpConnection.h"
#include "KVFPrinterNetwork.h"
#include "KVFPrinterUSB.h"
#include "PrinterInformation.h"
#include "QueueJobs.h"
#include "TCPIPPort.h"
#include "Trace.h"
#include "USBDevice.h"
#include "USBDevicePaths.h"
#include "WSDPort.h"

namespace zt {
namespace {

constexpr std::wstring_view kUniversalDriver = L"Meridian Print Driver";
constexpr std::uint32_t kHttpOk = 200;

// The printer's own web server: one GET for a document.
bool FetchOverHttp(const std::string& url, std::string& document) {
  HttpConnection connection;
  if (!connection.Open("GET", url)) return false;
  std::string response;
  std::uint32_t status = 0;
  if (!connection.Send({}, response, status) || status != kHttpOk) return false;
  document = std::move(response);
  return true;
}

std::unique_ptr<KVFPrinter> CreateForWSDPort(const PrinterInformation& queue) {
  if (!IsWSDPort(queue.PortName())) return nullptr;
  std::wstring address = ResolveWSDAddress(queue.PortName(), queue.ServerName());
  if (address.empty()) return nullptr;
  return std::make_unique<KVFPrinterNetwork>(std::move(address), FetchOverHttp);
}

std::unique_ptr<KVFPrinter> CreateForUSBPort(const PrinterInformation& queue) {
  std::optional<std::wstring> devicePath = FindUSBDevicePath(queue.PortName());
  if (!devicePath) return nullptr;
  return std::make_unique<KVFPrinterUSB>(*std::move(devicePath), USBServices{.openControl = OpenUSBControl,
                                                                             .openBulk = OpenUSBBulkIO,
                                                                             .loadDeviceMonitor = LoadDeviceMonitor,
                                                                             .countJobs = CountQueueJobs,
                                                                             .pause = SystemPause});
}

std::unique_ptr<KVFPrinter> CreateForTCPIPPort(const PrinterInformation& queue) {
  std::optional<TCPIPPortAddress> port = ResolveTCPIPPort(queue.PortName(), queue.ServerName());
  if (!port) return nullptr;
  auto printer = std::make_unique<KVFPrinterNetwork>(std::move(port->address), FetchOverHttp);
  if (!port->community.empty() && !printer->SetReadCommunity(ToNarrow(port->community))) {
    ZT_TRACE(Warning, "unusable SNMP community of port " << queue.PortName());
  }
  return printer;
}

}  // namespace

std::unique_ptr<KVFPrinter> CreatePrinterForQueue(const std::wstring& queueName) {
  PrinterInformation queue;
  if (!queue.ReadPrinterInfo(queueName) || queue.PortName().empty()) return nullptr;
  // The order matters: a WSD port may bear a name that ends like a USB port's. Who finds nothing leaves it to the next.
  std::unique_ptr<KVFPrinter> printer = CreateForWSDPort(queue);
  if (!printer) printer = CreateForUSBPort(queue);
  if (!printer) printer = CreateForTCPIPPort(queue);
  if (!printer) return nullptr;
  printer->SetQueueName(queueName);
  printer->SetUniversalDriver(queue.DriverName().find(kUniversalDriver) != std::wstring_view::npos);
  return printer;
}

}  // namespace zt
