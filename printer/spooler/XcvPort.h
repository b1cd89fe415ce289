#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "SpoolerBlock.h"

namespace zt {

// XcvPort is the monitor side of one port. The monitor's word is taken only when both the call and the status that it
// stores report success; every failure is traced.
class XcvPort {
 public:
  // Access is what is asked for when the port is opened: nothing particular, or SERVER_ACCESS_ENUMERATE, which a
  // standard TCP/IP port's monitor wants.
  enum class Access { Default, ServerEnumerate };

  // `serverName` is empty for a port of this computer. Requests to a port that cannot be opened fail.
  XcvPort(std::wstring_view portName, std::wstring_view serverName, Access access);

  // Request sends a command with its input and receives the reply into `output`, whose content counts only on success.
  [[nodiscard]] bool Request(const wchar_t* command, std::span<const std::byte> input, std::span<std::byte> output);

  // RequestText asks for a text of any length up to 64 K characters.
  [[nodiscard]] std::optional<std::wstring> RequestText(const wchar_t* command);

 private:
  void TraceRefusal(const wchar_t* command, std::uint32_t error) const;

  std::wstring portName_;
  PrinterHandle port_;
};

}  // namespace zt
