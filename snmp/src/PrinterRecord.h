#pragma once

#include <cstdint>
#include <span>

#include "ztsnmp/Printer.h"
#include "ztsnmp/ReqRespPDU.h"

namespace ztsnmp {

/// PrinterRecord fills in what is known about a printer. Both operations answer 0, or -1 with the printer unchanged.
class PrinterRecord {
 public:
  /// decodeSAPPacket reads the first printer of a service advertisement (NetWare Service Advertising Protocol: a
  /// general or nearest service response): its name, and its IPX address.
  [[nodiscard]] static int decodeSAPPacket(std::span<const std::uint8_t> packet, Printer& printer) noexcept;

  /// makePrinterObject takes name (sysName), description (hrDeviceDescr) and status (hrPrinterStatus) of the first
  /// device from an answer, whichever of them it holds; -1 when it holds none.
  [[nodiscard]] static int makePrinterObject(const ReqRespPDU& answer, Printer& printer) noexcept;
};

}  // namespace ztsnmp
