#pragma once

#include "Numbers.h"
#include "OctetString.h"
#include "Target.h"

namespace ztsnmp {
class PrinterRecord;
}

/// Printer is a printer that discovery found: a target to send requests to, and what is known about it.
class ZTSNMP_API Printer : public Target {
 public:
  Printer() = default;
  explicit Printer(const NetworkAddress& address) : Target(address) {}

  [[nodiscard]] const OctetString& getName() const noexcept { return name_; }
  [[nodiscard]] const OctetString& getDescription() const noexcept { return description_; }

  /// getStatus answers the printer's status (hrPrinterStatus, RFC 2790), -1 until known.
  [[nodiscard]] const Integer& getStatus() const noexcept { return status_; }

 private:
  friend class ztsnmp::PrinterRecord;
  OctetString name_;
  OctetString description_;
  Integer status_{-1};
};
