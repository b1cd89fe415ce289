#include "ztsnmp/SNMPManager.h"

#include <array>
#include <new>

#include "BCastOptions.h"
#include "CommIterator.h"
#include "Discovery.h"
#include "Exchange.h"
#include "MessageCodec.h"
#include "StatusText.h"

using ztsnmp::MessageCodec;

SNMPManager::SNMPManager() noexcept = default;
SNMPManager::SNMPManager(const SNMPManager& other) = default;
SNMPManager& SNMPManager::operator=(const SNMPManager& other) = default;

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

const char* SNMPManager::errorToString(int status) noexcept { return ztsnmp::textOf(status); }

int SNMPManager::operateBroadcast(ReqRespPDU& pdu, BCastOptions* options, EnumPDUType type) noexcept try {
  if (options == nullptr || options->onAnswer == nullptr) return StatusBroadcastInvalidParameters;
  const auto onStatus = [options](EnumDetectionStatType status) {
    if (options->onStatus != nullptr) options->onStatus(status);
  };
  return ztsnmp::askEveryone(pdu, type, options->community, options->seconds, options->onAnswer, onStatus);
} catch (const std::bad_alloc&) {
  return StatusGeneralError;
}

int SNMPManager::broadcast(ReqRespPDU& pdu, const char* community, AnswerCallback onAnswer,
                           StatusCallback onStatus) noexcept {
  return broadcast(pdu, community, onAnswer, onStatus, ztsnmp::kDefaultSeconds);
}

int SNMPManager::broadcast(ReqRespPDU& pdu, const char* community, AnswerCallback onAnswer, StatusCallback onStatus,
                           int seconds) noexcept {
  return broadcast(pdu, community, onAnswer, onStatus, PDUGetRequest, seconds);
}

int SNMPManager::broadcast(ReqRespPDU& pdu, const char* community, AnswerCallback onAnswer, StatusCallback onStatus,
                           EnumPDUType type, int seconds) noexcept {
  BCastOptions options{community, seconds, onAnswer, onStatus};
  return operateBroadcast(pdu, &options, type);
}

int SNMPManager::detectHPPrinters(IPAddress* list, int* count) noexcept try {
  if (list == nullptr || count == nullptr || *count < 0) return StatusGeneralError;
  std::size_t found = 0;
  const int status = ztsnmp::findHPPrinters({list, static_cast<std::size_t>(*count)}, found);
  if (status == StatusSuccess) *count = static_cast<int>(found);
  return status;
} catch (const std::bad_alloc&) {
  return StatusGeneralError;
}

unsigned long SNMPManager::getAvailableProtocols() noexcept try {
  unsigned long protocols = ProtocolNone;
  ztsnmp::CommIterator transports;
  while (ztsnmp::CommInterface* const transport = transports.next()) {
    if (transport->getProtocol() == ztsnmp::kProtocolUDP && transport->statusCheck() == 1) protocols |= ProtocolIP;
  }
  return protocols;
} catch (const std::bad_alloc&) {
  return ProtocolNone;
}
