// A datagram that claims to be an answer. The first byte says how many bindings are awaited, the second how many of
// them hold a value of a type already, as after a set.

#include <algorithm>
#include <array>
#include <vector>

#include "MessageCodec.h"
#include "Require.h"
#include "ztsnmp/ztsnmp.h"

namespace {

std::vector<std::uint8_t> requestOf(ReqRespPDU& pdu) {
  ztsnmp::MessageCodec::setHeader(pdu, PDUGetNextRequest, 0);
  std::vector<std::uint8_t> out(ztsnmp::MessageCodec::kMaxMessage);
  const int length = ztsnmp::MessageCodec::encodePacket(pdu, "", out);
  require(length > 0, "eight names fit a message");
  out.resize(static_cast<std::size_t>(length));
  return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const int count = 1 + data[0] % 8;
  const Integer integer(1);
  const OctetString octets("x", 1);
  const OID oid("1.3");
  const IPAddress address("1.2.3.4");
  const Counter counter(1);
  const IPv6Address v6("::1");
  const std::array<const SNMPDataType*, 6> values = {&integer, &octets, &oid, &address, &counter, &v6};
  ReqRespPDU pdu;
  for (int i = 0; i < count; ++i) {
    VarBind binding{OID("1.3.6.1")};
    if (i < data[1] % 8) binding.setValue(*values[static_cast<std::size_t>(i) % values.size()]);
    pdu.addVarBind(binding);
  }

  const int status = ztsnmp::MessageCodec::decodePacket({data + 2, size - 2}, pdu);
  require(status == 0 || status == -1, "the status is 0 or -1");
  require(pdu.getVarBindCount() == count, "the number of bindings stays");
  require(status == -1 || pdu.getErrorStatus() == 0, "an agent's error is no success");
  for (int i = 0; i < count; ++i) {
    const VarBind& binding = pdu.getVarBind(static_cast<unsigned>(i));
    require(binding.isValid() == 0, "names and values are valid, whatever was read");
    require(binding.getValue().toString() != nullptr, "each value has a text");
  }

  // What goes out for a name that was read is what goes out for its text.
  ReqRespPDU again;
  for (int i = 0; i < count; ++i) {
    again.addVarBind(VarBind{OID(pdu.getVarBind(static_cast<unsigned>(i)).getOID().getValue())});
  }
  require(requestOf(pdu) == requestOf(again), "a name is sent as its text says");
  return 0;
}
