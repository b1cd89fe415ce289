#include "LocalPrinterList_win.h"

#include <algorithm>
#include <string>

#include "Joined.h"
#include "LocalPrinters.h"
#include "PrinterFactory.h"
#include "PrinterInformation.h"
#include "Text.h"
#include "USBDevicePaths.h"
#include "WSDPort.h"

namespace zt {
namespace {

PrinterChoice ReadQueue(const std::wstring& name) {
  PrinterChoice choice;
  choice.kind = ChoiceKind::Queue;
  choice.name = name;
  PrinterInformation queue;
  if (!queue.ReadPrinterInfo(name)) {
    choice.why = Joined({"the print spooler does not tell about this queue"});
    return choice;
  }
  choice.driver = queue.DriverName();
  choice.port = queue.PortName();
  choice.target = FindTarget(queue);
  if (choice.target.kind == PortKind::None) choice.why = WhyNoTarget(choice.port, IsWSDPort(choice.port));
  return choice;
}

void AddUSBPrintersWithoutQueue(std::vector<PrinterChoice>& choices) {
  std::vector<std::wstring> paths;
  EnumerateUSBPrinterPaths(paths);
  for (const std::wstring& path : paths) {
    const bool hasQueue = std::ranges::any_of(choices, [&path](const PrinterChoice& choice) {
      return choice.target.kind == PortKind::USB && EqualsIgnoringCase(choice.target.address, path);
    });
    if (hasQueue) continue;
    PrinterChoice choice;
    choice.kind = ChoiceKind::USBInterface;
    choice.name = Joined({"USB printer without a queue"});
    choice.target.kind = PortKind::USB;
    choice.target.address = path;
    choices.push_back(choice);
  }
}

}  // namespace

std::vector<PrinterChoice> ListLocalPrinters(const ExchangeGate& gate) {
  std::vector<PrinterChoice> choices;
  for (const std::wstring& name : EnumerateLocalPrinters()) {
    if (!IsOpen(gate)) break;
    choices.push_back(ReadQueue(name));
  }
  if (IsOpen(gate)) AddUSBPrintersWithoutQueue(choices);
  PrinterChoice made;
  made.kind = ChoiceKind::Virtual;
  made.name = Joined({"Virtual printer"});
  choices.push_back(made);
  return choices;
}

}  // namespace zt
