#include "ChosenPrinter_win.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "PrinterFactory.h"
#include "QueueServices.h"
#include "VirtualZOLTDataProvider.h"
#include "ZOLTDataProviderFromPrinter.h"

namespace zt {
namespace {

// Waits no longer than the gate is open.
void PauseWhileOpen(const ExchangeGate& gate, std::uint32_t milliseconds) {
  constexpr std::uint32_t kStep = 100;
  for (std::uint32_t waited = 0; waited < milliseconds && IsOpen(gate); waited += kStep) {
    SystemPause(std::min(kStep, milliseconds - waited));
  }
}

}  // namespace

std::unique_ptr<KVFPrinter> ConnectPrinter(const PrinterChoice& choice, const ExchangeGate& gate) {
  return choice.kind == ChoiceKind::Queue ? CreatePrinterForQueue(choice.name, gate)
                                          : CreatePrinterAt(choice.target, gate);
}

std::unique_ptr<IZOLTDataProvider> MakeProvider(const PrinterChoice& choice, const ExchangeGate& gate) {
  if (choice.kind == ChoiceKind::Virtual) return std::make_unique<VirtualZOLTDataProvider>(choice.name);
  QueueServices services = LocalQueueServices();
  services.createPrinter = [&choice, &gate](const std::wstring&) { return ConnectPrinter(choice, gate); };
  services.pause = [&gate](std::uint32_t milliseconds) { PauseWhileOpen(gate, milliseconds); };
  if (choice.kind == ChoiceKind::Queue) {
    services.sendRawJob = [&gate, send = services.sendRawJob](const std::wstring& queue, std::string_view bytes) {
      return IsOpen(gate) && send(queue, bytes);
    };
  } else {
    services.countJobs = [](const std::wstring&) { return 0; };
    services.sendRawJob = [](const std::wstring&, std::string_view) { return false; };
  }
  return std::make_unique<ZOLTDataProviderFromPrinter>(choice.name, std::move(services));
}

}  // namespace zt
