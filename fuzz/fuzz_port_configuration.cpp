// A port monitor's reply with any bytes in it; a longer input is cut, a shorter one has zeros behind it.

#include <algorithm>
#include <cstring>

#include "Require.h"
#include "TCPIPPort.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zt::PortConfiguration reply{};
  std::transform(data, data + std::min(size, reply.size()), reply.begin(), [](std::uint8_t b) { return std::byte{b}; });
  const zt::TCPIPPortAddress port = zt::ReadPortConfiguration(reply);
  require(port.address.size() <= 49 && port.community.size() <= 33, "a text is no longer than its field");
  require((port.address + port.community).find(L'\0') == std::wstring::npos, "a text ends before its NUL");
  return 0;
}
