#include "CodePage.h"
#include "HttpConnection.h"
#include "KVFPrinterNetwork.h"
#include "PrinterFactory.h"
#include "PrinterInformation.h"
#include "TCPIPPort.h"

namespace zt {
namespace {

constexpr std::wstring_view universalDriver = L"Meridian Print Driver";
constexpr std::uint32_t httpOk = 200;

// The printer's own web server: one GET for a document.
bool FetchOverHttp(const std::string& url, std::string& document) {
  HttpConnection connection;
  if (!connection.Open("GET", url)) return false;
  std::string response;
  std::uint32_t status = 0;
  if (!connection.Send({}, response, status) || status != httpOk) return false;
  document = std::move(response);
  return true;
}

std::unique_ptr<KVFPrinter> CreateForTCPIPPort(const PrinterInformation& queue) {
  const auto port = ResolveTCPIPPort(queue.PortName(), queue.ServerName());
  if (!port) return nullptr;
  auto printer = std::make_unique<KVFPrinterNetwork>(port->address, FetchOverHttp);
  if (!port->community.empty()) printer->SetReadCommunity(ToNarrow(port->community));
  return printer;
}

}  // namespace

std::unique_ptr<KVFPrinter> CreatePrinterForQueue(const std::wstring& queueName) {
  PrinterInformation queue;
  if (!queue.ReadPrinterInfo(queueName) || queue.PortName().empty()) return nullptr;
  std::unique_ptr<KVFPrinter> printer = CreateForTCPIPPort(queue);
  if (!printer) return nullptr;
  printer->SetQueueName(queueName);
  printer->SetUniversalDriver(queue.DriverName().find(universalDriver) != std::wstring_view::npos);
  return printer;
}

}  // namespace zt
