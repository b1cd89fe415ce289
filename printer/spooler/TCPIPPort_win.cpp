#include "TCPIPPort.h"

#include "XcvPort.h"

namespace zt {
namespace {

// The request of "GetConfigInfo": CONFIG_INFO_DATA_1, 128 reserved bytes and the version as a 32-bit number.
constexpr std::array<std::byte, 132> MakeConfigurationRequest() {
  std::array<std::byte, 132> request{};
  request[128] = std::byte{1};
  return request;
}

}  // namespace

std::optional<TCPIPPortAddress> ResolveTCPIPPort(std::wstring_view portName, std::wstring_view serverName) {
  XcvPort port(portName, serverName, XcvPort::Access::ServerEnumerate);
  PortConfiguration reply{};
  if (!port.Request(L"GetConfigInfo", MakeConfigurationRequest(), reply)) return std::nullopt;
  return ReadPortConfiguration(reply);
}

}  // namespace zt
