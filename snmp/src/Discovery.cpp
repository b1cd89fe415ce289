#include "Discovery.h"

#include <array>
#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "CommIterator.h"
#include "MessageCodec.h"

namespace ztsnmp {

namespace {

/// However many hosts answer, or go on answering: at most so many times the seconds are spent.
constexpr int kMaxWaits = 10;

/// RFC 2790: hrDeviceType and hrDeviceID of the first device, and the type that says "printer".
constexpr const char* kDeviceType = "1.3.6.1.2.1.25.3.2.1.2.1";
constexpr const char* kDeviceID = "1.3.6.1.2.1.25.3.2.1.4.1";
constexpr std::string_view kTypePrinter = "1.3.6.1.2.1.25.3.1.5";
constexpr std::string_view kHPPrinters = "1.3.6.1.4.1.11.2.3.9.1";

void deliver(const ReqRespPDU& question, std::span<const std::uint8_t> message, const std::string& sender,
             const AnswerHandler& onAnswer, const StatusHandler& onStatus) {
  ReqRespPDU answer(question);
  if (MessageCodec::decodePacket(message, answer) != StatusSuccess) return;
  IPAddress ipv4(sender.c_str());
  IPv6Address ipv6(sender.c_str());
  if (ipv4.isValid() == StatusSuccess) {
    onAnswer(answer, &ipv4);
  } else {
    onAnswer(answer, &ipv6);
  }
  onStatus(DetectionAnswered);
}

/// Hands over the answers that come in.
void collectAnswers(CommInterface& transport, const ReqRespPDU& question, std::chrono::seconds wait,
                    const AnswerHandler& onAnswer, const StatusHandler& onStatus) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + wait * kMaxWaits;
  std::array<std::uint8_t, MessageCodec::kMaxMessage> buffer;
  while (Clock::now() + wait <= end) {  // No wait begins that could last longer.
    std::size_t received = 0;
    std::string sender;
    const int status = transport.receive(buffer, received, &sender);
    // A single datagram that cannot be read is no reason to leave the others.
    if (status == StatusReceiveError) continue;
    if (status != StatusSuccess) break;
    deliver(question, std::span(buffer).first(received), sender, onAnswer, onStatus);
  }
}

bool isAtOrBelow(std::string_view oid, std::string_view root) {
  return oid.starts_with(root) && (oid.size() == root.size() || oid[root.size()] == '.');
}

bool isHPPrinter(const ReqRespPDU& answer) {
  const SNMPDataType& type = answer.getVarBind(0).getValue();
  const SNMPDataType& device = answer.getVarBind(1).getValue();
  return type.getDataType() == DataTypeOID && type.toString() == kTypePrinter && device.getDataType() == DataTypeOID &&
         isAtOrBelow(device.toString(), kHPPrinters);
}

}  // namespace

int askEveryone(ReqRespPDU& pdu, EnumPDUType type, const char* community, int seconds, const AnswerHandler& onAnswer,
                const StatusHandler& onStatus) {
  if (type != PDUGetRequest && type != PDUGetNextRequest) return StatusInvalidPDUType;
  if (const int status = pdu.isValid(); status != StatusSuccess) return status;
  Target rules;  // Knows what a community and a timeout may be.
  if (community != nullptr) {
    if (const int status = rules.setReadCommunity(community); status != StatusSuccess) return status;
  }
  if (const int status = rules.setTimeout(seconds); status != StatusSuccess) return status;

  MessageCodec::setHeader(pdu, type, 0);
  std::array<std::uint8_t, MessageCodec::kMaxMessage> buffer;
  const int length = MessageCodec::encodePacket(pdu, rules.getReadCommunity(), buffer);
  if (length < 0) return StatusBroadcastError;

  bool reached = false;
  CommIterator transports;
  while (CommInterface* const transport = transports.next()) {
    if (transport->initialize() != StatusSuccess) continue;
    transport->setRetryCount(0);
    transport->setTimeout(seconds);
    if (transport->broadcast(std::span(buffer).first(static_cast<std::size_t>(length))) != StatusSuccess) continue;
    reached = true;
    onStatus(DetectionStarted);
    collectAnswers(*transport, pdu, std::chrono::seconds(seconds), onAnswer, onStatus);
  }
  onStatus(reached ? DetectionFinished : DetectionFailed);
  return reached ? StatusSuccess : StatusBroadcastError;
}

int findHPPrinters(std::span<IPAddress> room, std::size_t& found) {
  ReqRespPDU pdu;
  for (const char* name : {kDeviceType, kDeviceID}) {
    if (const int status = pdu.addVarBind(VarBind(OID(name))); status != StatusSuccess) return status;
  }
  std::size_t count = 0;
  const auto collect = [&](const ReqRespPDU& answer, const NetworkAddress* sender) {
    if (count == room.size() || sender->getAddressType() != AddressTypeIP || !isHPPrinter(answer)) return;
    const std::string_view address = sender->getValue();
    for (const IPAddress& known : room.first(count)) {
      if (known.getValue() == address) return;
    }
    if (room[count].setValue(sender->getValue()) == StatusSuccess) ++count;
  };
  const int status = askEveryone(pdu, PDUGetRequest, nullptr, kDefaultSeconds, collect, [](EnumDetectionStatType) {});
  if (status == StatusSuccess) found = count;
  return status;
}

}  // namespace ztsnmp
