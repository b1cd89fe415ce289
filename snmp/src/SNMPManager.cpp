#include "ztsnmp/SNMPManager.h"

#include <array>
#include <new>

#include "CommIterator.h"
#include "Exchange.h"
#include "MessageCodec.h"

using ztsnmp::MessageCodec;

SNMPManager::~SNMPManager() {
  if (registered_ == 1) unregister();
}

int SNMPManager::get(ReqRespPDU& pdu, Target& target) noexcept { return operateUnicast(pdu, target, PDUGetRequest); }

int SNMPManager::getNext(ReqRespPDU& pdu, Target& target) noexcept {
  return operateUnicast(pdu, target, PDUGetNextRequest);
}

int SNMPManager::set(ReqRespPDU& pdu, Target& target) noexcept { return operateUnicast(pdu, target, PDUSetRequest); }

int SNMPManager::operateUnicast(ReqRespPDU& pdu, Target& target, EnumPDUType type) noexcept try {
  if (const int status = pdu.isValid(); status != StatusSuccess) return status;
  if (target.needsResolution()) {
    if (const int status = target.ResolveAddress(); status != StatusSuccess) return status;
  }
  if (const int status = target.isValid(); status != StatusSuccess) return status;

  MessageCodec::setHeader(pdu, type, requestId_);
  std::array<std::uint8_t, MessageCodec::kMaxMessage> buffer;
  const char* const community = type == PDUSetRequest ? target.getWriteCommunity() : target.getReadCommunity();
  const int length = MessageCodec::encodePacket(pdu, community, buffer);
  // The code of a failed get, for a get-next and a set too: programs look for this one.
  if (length < 0) return StatusOperationFailed;

  const auto request = std::span(buffer).first(static_cast<std::size_t>(length));
  ztsnmp::CommIterator transports;
  while (ztsnmp::CommInterface* const transport = transports.next()) {
    if (ztsnmp::exchange(*transport, target, request, pdu)) return StatusSuccess;
  }
  // An agent's own error stays for the caller to see.
  if (pdu.getErrorStatus() == 0) MessageCodec::setError(pdu, -1, -1);
  return StatusOperationFailed;
} catch (const std::bad_alloc&) {
  return StatusGeneralError;
}
