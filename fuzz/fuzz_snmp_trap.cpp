// A datagram that claims to be a trap.

#include "MessageCodec.h"
#include "Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  TrapPDU trap;
  const int status = ztsnmp::MessageCodec::decodeTrapPacket(std::span(data, size), trap);
  require(status == 0 ? trap.isValid() == 0 : trap.getVarBindCount() == 0, "a trap is whole or not there");
  for (int i = 0; i < trap.getVarBindCount(); ++i) {
    require(trap.getVarBind(static_cast<unsigned>(i)).isValid() == 0, "names and values are valid");
  }
  return 0;
}
