#include "NetworkSearch_win.h"

#include <ztsnmp/SNMPManager.h>

#include <algorithm>
#include <exception>
#include <string_view>
#include <utility>

#include "CodePage.h"

namespace zt {
namespace {

// Get-next behind each of the two: only a printer has an object of the Printer MIB (RFC 3805), and whatever has one has
// a description of itself as a device (RFC 2790).
constexpr const char* kPrinterObjects = "1.3.6.1.2.1.43";
constexpr const char* kDeviceDescriptions = "1.3.6.1.2.1.25.3.2.1.3";
constexpr int kSeconds = 2;

// The callback of a search is told nothing but the answer, so what is found is collected here.
std::vector<PrinterChoice>* found = nullptr;

bool IsBelow(const OID& name, std::string_view prefix) {
  const std::string_view text = name.getValue();
  return text.size() > prefix.size() && text.starts_with(prefix) && text[prefix.size()] == '.';
}

void Collect(ReqRespPDU& answer, NetworkAddress* sender) {
  try {
    if (!sender || answer.getVarBindCount() != 2 || !IsBelow(answer.getVarBind(0).getOID(), kPrinterObjects)) return;
    const VarBind& description = answer.getVarBind(1);
    std::wstring name;
    if (IsBelow(description.getOID(), kDeviceDescriptions)) name = DecodeText(description.getValue().toString());
    std::wstring address = ToWide(sender->getValue());
    const bool known = std::ranges::any_of(
        *found, [&address](const PrinterChoice& choice) { return choice.target.address == address; });
    if (!known) found->push_back(NetworkPrinter(std::move(name), std::move(address)));
  } catch (const std::exception&) {
    // Without memory for another printer the search goes on without it: a callback must not throw.
  }
}

}  // namespace

PrinterChoice NetworkPrinter(std::wstring name, std::wstring address) {
  PrinterChoice choice;
  choice.kind = ChoiceKind::Network;
  choice.name = name.empty() ? address : std::move(name);
  choice.target.kind = PortKind::TCPIP;
  choice.target.address = std::move(address);
  return choice;
}

std::optional<std::vector<PrinterChoice>> SearchNetwork() {
  std::vector<PrinterChoice> printers;
  found = &printers;
  ReqRespPDU request;
  request.addVarBind(VarBind(OID(kPrinterObjects)));
  request.addVarBind(VarBind(OID(kDeviceDescriptions)));
  SNMPManager manager;
  const int status = manager.broadcast(request, nullptr, Collect, nullptr, PDUGetNextRequest, kSeconds);
  found = nullptr;
  if (status != 0) return std::nullopt;
  return printers;
}

}  // namespace zt
