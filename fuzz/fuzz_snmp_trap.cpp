// A datagram that claims to be a trap.

#include <algorithm>

#include "MessageCodec.h"
#include "Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  TrapPDU trap;
  const int status = ztsnmp::MessageCodec::decodeTrapPacket(std::span(data, size), trap);
  require(status == 0 ? trap.isValid() == 0 : trap.getVarBindCount() == 0, "a trap is whole or not there");
  for (int i = 0; i < trap.getVarBindCount(); ++i) {
    require(trap.getVarBind(static_cast<unsigned>(i)).isValid() == 0, "names and values are valid");
  }
  // As the trap service hands it on.
  _MESSAGE message{static_cast<std::uint32_t>(size), {}};
  std::copy_n(data, std::min(size, sizeof(message.data)), message.data);
  TrapPDU again;
  const int served = ztsnmp::MessageCodec::decodeTrapPacket(&message, again);
  require(served == (size <= sizeof(message.data) ? status : -1), "a trap is the same by the service");
  return 0;
}
