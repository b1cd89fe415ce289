#pragma once

#include "Numbers.h"
#include "OctetString.h"
#include "Target.h"

namespace ztsnmp {
class PrinterRecord;
}

/// Printer is a printer that discovery found: a target to send requests to, and what is known about it. No public
/// operation of this version hands one out; one that a program makes knows no more than its address.
class ZTSNMP_API Printer : public Target {
 public:
  Printer();
  explicit Printer(const NetworkAddress& address);
  Printer(const Printer& other);
  Printer& operator=(const Printer& other);
  ~Printer() override;

  [[nodiscard]] const OctetString& getName() const noexcept;
  [[nodiscard]] const OctetString& getDescription() const noexcept;

  /// getStatus returns the printer's status (hrPrinterStatus, RFC 2790), -1 until known.
  [[nodiscard]] const Integer& getStatus() const noexcept;

 private:
  friend class ztsnmp::PrinterRecord;
  OctetString name_;
  OctetString description_;
  Integer status_{-1};
};
