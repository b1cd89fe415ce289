#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "SpoolerBlock.h"

namespace zt {

// PrinterInformation is what the spooler tells about one print queue. Texts are empty where the queue has none and as
// long as nothing was read; they live until the next reading.
class PrinterInformation {
 public:
  // ReadPrinterInfo asks the spooler; what was read before is gone. False when there is no such queue, or the spooler
  // fails.
  [[nodiscard]] bool ReadPrinterInfo(const std::wstring& queueName);

  bool WasRead() const { return block_.has_value(); }

  std::wstring_view ServerName() const { return serverName_; }  // empty for a queue of this computer
  std::wstring_view PortName() const { return portName_; }
  std::wstring_view DriverName() const { return driverName_; }

  // IsConnection reports whether the queue is a connection to a printer that another computer shares.
  bool IsConnection() const { return isConnection_; }

 private:
  std::optional<SpoolerBlock> block_;
  std::wstring_view serverName_;
  std::wstring_view portName_;
  std::wstring_view driverName_;
  bool isConnection_ = false;
};

// CheckQueueIsLocal reports whether the queue was found and is no connection to another computer's printer; it traces
// what is wrong.
[[nodiscard]] bool CheckQueueIsLocal(const PrinterInformation& information);

}  // namespace zt
