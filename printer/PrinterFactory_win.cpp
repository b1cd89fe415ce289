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

std::optional<PrinterTarget> FindByWSDPort(const PrinterInformation& queue) {
  if (!IsWSDPort(queue.PortName())) return std::nullopt;
  std::wstring address = ResolveWSDAddress(queue.PortName(), queue.ServerName());
  if (address.empty()) return std::nullopt;
  return PrinterTarget{.kind = PortKind::WSD, .address = std::move(address), .community = {}};
}

std::optional<PrinterTarget> FindByUSBPort(const PrinterInformation& queue) {
  std::optional<std::wstring> devicePath = FindUSBDevicePath(queue.PortName());
  if (!devicePath) return std::nullopt;
  return PrinterTarget{.kind = PortKind::USB, .address = *std::move(devicePath), .community = {}};
}

std::optional<PrinterTarget> FindByTCPIPPort(const PrinterInformation& queue) {
  std::optional<TCPIPPortAddress> port = ResolveTCPIPPort(queue.PortName(), queue.ServerName());
  if (!port) return std::nullopt;
  return PrinterTarget{
      .kind = PortKind::TCPIP, .address = std::move(port->address), .community = std::move(port->community)};
}

std::unique_ptr<KVFPrinter> CreateUSBPrinter(const std::wstring& devicePath, const ExchangeGate& gate) {
  // What opens the printer is asked again before each exchange, so that here is the place of the gate.
  return std::make_unique<KVFPrinterUSB>(
      devicePath, USBServices{.openControl = [gate](const std::wstring& path) -> std::unique_ptr<USBControl> {
                                return IsOpen(gate) ? OpenUSBControl(path) : nullptr;
                              },
                              .openBulk = [gate](const std::wstring& path) -> std::unique_ptr<USBBulkIO> {
                                return IsOpen(gate) ? OpenUSBBulkIO(path) : nullptr;
                              },
                              .loadDeviceMonitor = LoadDeviceMonitor,
                              .countJobs = CountQueueJobs,
                              .pause =
                                  [gate](std::uint32_t milliseconds) {
                                    if (IsOpen(gate)) SystemPause(milliseconds);
                                  }});
}

std::unique_ptr<KVFPrinter> CreateNetworkPrinter(const PrinterTarget& target, const ExchangeGate& gate) {
  auto printer = std::make_unique<KVFPrinterNetwork>(target.address, FetchOverHttp);
  if (gate) printer->SetGate(gate);
  if (!target.community.empty() && !printer->SetReadCommunity(ToNarrow(target.community))) {
    ZT_TRACE(Warning, "unusable SNMP community of port " << target.port);
  }
  return printer;
}

}  // namespace

PrinterTarget FindTarget(const PrinterInformation& queue) {
  if (queue.PortName().empty()) return {};
  // The order matters: a WSD port may bear a name that ends like a USB port's. Who finds nothing leaves it to the next.
  std::optional<PrinterTarget> target = FindByWSDPort(queue);
  if (!target) target = FindByUSBPort(queue);
  if (!target) target = FindByTCPIPPort(queue);
  if (!target) return {};
  target->port = queue.PortName();
  return *target;
}

std::unique_ptr<KVFPrinter> CreatePrinterAt(const PrinterTarget& target, const ExchangeGate& gate) {
  switch (target.kind) {
    case PortKind::USB:
      return CreateUSBPrinter(target.address, gate);
    case PortKind::WSD:
    case PortKind::TCPIP:
      return CreateNetworkPrinter(target, gate);
    default:
      return nullptr;
  }
}

std::unique_ptr<KVFPrinter> CreatePrinterForQueue(const std::wstring& queueName, const ExchangeGate& gate) {
  PrinterInformation queue;
  if (!queue.ReadPrinterInfo(queueName)) return nullptr;
  std::unique_ptr<KVFPrinter> printer = CreatePrinterAt(FindTarget(queue), gate);
  if (!printer) return nullptr;
  printer->SetQueueName(queueName);
  printer->SetUniversalDriver(queue.DriverName().find(kUniversalDriver) != std::wstring_view::npos);
  return printer;
}

}  // namespace zt
