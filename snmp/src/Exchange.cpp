#include "Exchange.h"

#include <array>

#include "MessageCodec.h"

namespace ztsnmp {

namespace {

bool receiveAnswer(CommInterface& transport, ReqRespPDU& pdu) {
  std::array<std::uint8_t, MessageCodec::kMaxMessage> buffer;
  std::size_t received = 0;
  if (transport.receive(buffer, received, nullptr) != StatusSuccess) return false;
  return MessageCodec::decodePacket(std::span(buffer).first(received), pdu) == StatusSuccess;
}

}  // namespace

bool exchange(CommInterface& transport, Target& target, std::span<const std::uint8_t> request, ReqRespPDU& pdu) {
  if (transport.initialize() != StatusSuccess) return false;
  transport.setRetryCount(target.getRetryCount());
  transport.setTimeout(target.getTimeout());

  if (transport.getAddressingMode() != kAddressingEach) {
    return transport.transmit(target, request) == StatusSuccess && receiveAnswer(transport, pdu);
  }
  const NetworkAddress* address = target.getFirstAddress();
  for (; address != nullptr && address->isValid() == StatusSuccess; address = target.getNextAddress()) {
    if (transport.transmitTo(address->getValue(), request) == StatusSuccess && receiveAnswer(transport, pdu)) {
      return true;
    }
  }
  return false;
}

}  // namespace ztsnmp
