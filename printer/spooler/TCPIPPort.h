#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zt {

struct TCPIPPortAddress {
  std::wstring address;    // IP address or host name; may be empty
  std::wstring community;  // SNMP community; empty when the port has none
  bool operator==(const TCPIPPortAddress&) const = default;
};

// A standard TCP/IP port's reply to "GetConfigInfo": PORT_DATA_1, little-endian, UTF-16.
using PortConfiguration = std::array<std::byte, 964>;

// ReadPortConfiguration takes the IP address, or else the host name, and the community from the reply. A text that
// fills its field needs no terminator.
TCPIPPortAddress ReadPortConfiguration(const PortConfiguration& reply);

// ResolveTCPIPPort asks the monitor of a standard TCP/IP port for its configuration (Windows only). `serverName` is
// empty for a port of this computer. Nothing when the port has no such monitor.
[[nodiscard]] std::optional<TCPIPPortAddress> ResolveTCPIPPort(std::wstring_view portName,
                                                               std::wstring_view serverName);

}  // namespace zt
