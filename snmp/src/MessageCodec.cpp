#include "MessageCodec.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <new>
#include <optional>
#include <utility>

#include "BerWriter.h"
#include "OIDCodec.h"
#include "ztsnmp/IPAddress.h"
#include "ztsnmp/Numbers.h"
#include "ztsnmp/OctetString.h"

namespace ztsnmp {

namespace {

constexpr std::uint8_t kTagOctetString = 0x04;
constexpr std::uint8_t kTagInteger = 0x02;
constexpr std::uint8_t kTagSequence = 0x30;
constexpr std::uint8_t kTagIPAddress = 0x40;
constexpr std::uint8_t kTagTimeTicks = 0x43;
constexpr std::uint8_t kTagGetResponse = 0xA2;
constexpr std::uint8_t kTagTrap = 0xA4;

/// RFC 1157, section 4: version-1 is 0.
constexpr std::array<std::uint8_t, 3> kVersion1 = {kTagInteger, 1, 0};

/// An IpAddress has four octets (RFC 1155, section 3.2.3.2). Longer ones up to this are let pass, and cut.
constexpr std::size_t kIPAddressOctets = 4;
constexpr std::size_t kMaxIPAddressContent = 25;

std::span<const std::uint8_t> asBytes(std::string_view text) {
  return {static_cast<const std::uint8_t*>(static_cast<const void*>(text.data())), text.size()};
}

const char* asText(std::span<const std::uint8_t> bytes) {
  return static_cast<const char*>(static_cast<const void*>(bytes.data()));
}

// ---- writing

/// request-id, error-status and error-index are always one byte long, on purpose: the reading side expects them at
/// fixed places, and so do old agents. A request-id of one byte is enough, as nothing tells requests apart by it: each
/// operation has sockets, and so ports, of its own.
void writeHeaderFields(BerWriter& writer, int requestId, int errorStatus, int errorIndex) {
  constexpr std::uint8_t kLength = 1;
  writer.bytes(std::array{kTagInteger, kLength, static_cast<std::uint8_t>(requestId),    //
                          kTagInteger, kLength, static_cast<std::uint8_t>(errorStatus),  //
                          kTagInteger, kLength, static_cast<std::uint8_t>(errorIndex)});
}

bool writeIPAddress(BerWriter& writer, const char* dotted) {
  // An IPv6Address has this data type, too, and no encoding.
  if (IPAddress::isValidAddress(dotted) != StatusSuccess) return false;
  std::array<std::uint8_t, kIPAddressOctets> octets{};
  std::size_t i = 0;
  for (char c : std::string_view(dotted)) {
    if (c == '.') {
      ++i;
    } else {
      octets[i] = static_cast<std::uint8_t>(octets[i] * 10 + (c - '0'));
    }
  }
  writer.octets(kTagIPAddress, octets);
  return true;
}

bool writeOctetString(BerWriter& writer, const OctetString& value) {
  std::uint64_t length = 0;
  const unsigned char* bytes = value.getValue(length);
  if (OctetString::isValidValue(bytes, length) != StatusSuccess) return false;
  writer.octets(kTagOctetString, {bytes, static_cast<std::size_t>(length)});
  return true;
}

/// false when the value has no encoding.
bool writeValue(BerWriter& writer, const SNMPDataType& value) {
  switch (value.getDataType()) {
    case DataTypeInteger:
      writer.integer(static_cast<const Integer&>(value).getValue());
      return true;
    case DataTypeOctetString:
      return writeOctetString(writer, static_cast<const OctetString&>(value));
    case DataTypeNull:
      writer.null();
      return true;
    case DataTypeOID:
      return OIDCodec::write(writer, static_cast<const OID&>(value));
    case DataTypeIPAddress:
      return writeIPAddress(writer, value.toString());
    case DataTypeCounter:
      writer.unsignedNumber(DataTypeCounter, static_cast<const Counter&>(value).getValue());
      return true;
    case DataTypeGauge:
      writer.unsignedNumber(DataTypeGauge, static_cast<const Gauge&>(value).getValue());
      return true;
    case DataTypeTimeTicks:
      writer.unsignedNumber(DataTypeTimeTicks, static_cast<const TimeTicks&>(value).getValue());
      return true;
    case DataTypeNone:
      break;
  }
  return false;
}

/// false when the binding has no encoding; what was written of it is then to be taken back.
bool writeBinding(BerWriter& writer, const VarBind& binding, EnumPDUType type) {
  const std::size_t start = writer.mark();
  if (type != PDUGetRequest && type != PDUGetNextRequest && type != PDUSetRequest) return false;
  if (!binding.hasValue() || !writeValue(writer, binding.getValue())) return false;
  if (!OIDCodec::write(writer, binding.getOID())) return false;
  writer.header(kTagSequence, start);
  return true;
}

// ---- reading

bool fill(Integer& value, BerReader content) {
  const auto number = readInteger(content);
  return number && value.setValue(*number) == StatusSuccess;
}

/// For `Counter`, `Gauge` and `TimeTicks`.
template <typename UnsignedNumber>
bool fill(UnsignedNumber& value, BerReader content) {
  const auto number = readUnsigned(content);
  return number && value.setValue(*number) == StatusSuccess;
}

bool fill(OctetString& value, BerReader content) {
  const auto bytes = content.takeRest();
  // Empty content may come as a null span; the value wants to see data.
  return value.setValue(bytes.empty() ? "" : asText(bytes), bytes.size()) == StatusSuccess;
}

bool fill(OID& value, BerReader content) { return OIDCodec::read(content, value); }

bool fill(IPAddress& value, BerReader content) {
  if (content.remaining() > kMaxIPAddressContent) return false;
  const auto octets = content.take(kIPAddressOctets);
  if (!octets) return false;
  const auto o = *octets;
  char text[16];
  std::snprintf(text, sizeof(text), "%d.%d.%d.%d", o[0], o[1], o[2], o[3]);
  return value.setValue(text) == StatusSuccess;
}

template <typename Value>
std::unique_ptr<SNMPDataType> readAs(BerReader content) {
  auto value = std::make_unique<Value>();
  if (!fill(*value, content)) return nullptr;
  return value;
}

/// A value of the class, other than `Null`, that the tag names; null when there is no such class or the content is
/// refused. Counter64 and the exceptions of SNMPv2 are among the tags without a class.
std::unique_ptr<SNMPDataType> readValue(const BerReader::Element& element) {
  switch (element.tag) {
    case DataTypeInteger:
      return readAs<Integer>(element.content);
    case DataTypeOctetString:
      return readAs<OctetString>(element.content);
    case DataTypeOID:
      return readAs<OID>(element.content);
    case DataTypeIPAddress:
      return readAs<IPAddress>(element.content);
    case DataTypeCounter:
      return readAs<Counter>(element.content);
    case DataTypeGauge:
      return readAs<Gauge>(element.content);
    case DataTypeTimeTicks:
      return readAs<TimeTicks>(element.content);
    default:
      return nullptr;
  }
}

bool isIPv6Address(const SNMPDataType& value) {
  return value.getDataType() == DataTypeIPAddress &&
         static_cast<const NetworkAddress&>(value).getAddressType() == AddressTypeIPv6;
}

/// The PDU's content of a message of version 1; bytes behind the message, and behind the PDU in it, are not looked at.
std::optional<BerReader> enterMessage(std::span<const std::uint8_t> message, std::uint8_t pduTag) {
  if (message.size() > MessageCodec::kMaxMessage) return std::nullopt;
  BerReader datagram(message);
  auto body = datagram.enter(kTagSequence);
  if (!body || !body->skipExactly(kVersion1)) return std::nullopt;
  // The community is not compared with the one sent: agents answer with their own.
  if (!body->enter(kTagOctetString)) return std::nullopt;
  return body->enter(pduTag);
}

}  // namespace

void MessageCodec::setHeader(ReqRespPDU& pdu, EnumPDUType type, int requestId) noexcept {
  pdu.type_ = type;
  pdu.requestId_ = requestId;
  setError(pdu, 0, 0);
}

void MessageCodec::setError(ReqRespPDU& pdu, int status, int index) noexcept {
  pdu.errorStatus_ = status;
  pdu.errorIndex_ = index;
}

int MessageCodec::encodePacket(ReqRespPDU& pdu, std::string_view community, std::span<std::uint8_t> out) noexcept {
  if (community.size() > kMaxCommunity) return StatusGeneralError;
  const bool asksForValues = pdu.type_ == PDUGetRequest || pdu.type_ == PDUGetNextRequest;

  BerWriter writer(out);
  for (auto each = pdu.varBinds_.rbegin(); each != pdu.varBinds_.rend(); ++each) {
    VarBind& binding = *each;
    if (asksForValues) binding.setNull();
    const std::size_t start = writer.mark();
    // The other bindings go out all the same, on purpose; the answer then shows the gap.
    if (!writeBinding(writer, binding, pdu.type_)) writer.rewind(start);
  }
  writer.header(kTagSequence, 0);
  writeHeaderFields(writer, pdu.requestId_, pdu.errorStatus_, pdu.errorIndex_);
  writer.header(static_cast<std::uint8_t>(pdu.type_), 0);
  writer.octets(kTagOctetString, asBytes(community));
  writer.bytes(kVersion1);
  writer.header(kTagSequence, 0);
  if (writer.failed()) return StatusGeneralError;

  const auto message = writer.written();
  std::copy(message.begin(), message.end(), out.begin());
  return static_cast<int>(message.size());
}

bool MessageCodec::readBinding(BerReader content, VarBind& slot) {
  const auto name = content.takeElement();
  if (!name || name->tag != OIDCodec::kTag) return false;
  const auto element = content.takeElement();
  if (!element) return false;
  // What a set has sent comes back as the same type.
  if (slot.value_ && slot.value_->getDataType() != element->tag) return false;
  std::unique_ptr<SNMPDataType> value;
  if (element->tag != DataTypeNull) {
    value = readValue(*element);
    if (!value) return false;
  } else if (element->content.remaining() > 0) {  // X.690, 8.8.2: no content
    return false;
  }
  if (!OIDCodec::read(name->content, slot.name_)) return false;
  // An IPv6Address, which no octets fit, stays and counts as read all the same, on purpose: an agent that echoes the
  // set of an address is not an error.
  if (slot.value_ && isIPv6Address(*slot.value_)) return true;
  slot.value_ = std::move(value);
  slot.holdsNull_ = slot.value_ == nullptr;
  return true;
}

int MessageCodec::decodePacket(std::span<const std::uint8_t> message, ReqRespPDU& pdu) noexcept try {
  auto content = enterMessage(message, kTagGetResponse);
  if (!content) return StatusGeneralError;

  // Three fields of 02 01 nn each are assumed, on purpose, and only nn is read: agents repeat the request-id as they
  // got it, in one byte. It is not compared, since all requests have the same.
  const auto fields = content->take(9);
  if (!fields) return StatusGeneralError;
  pdu.requestId_ = (*fields)[2];
  setError(pdu, (*fields)[5], (*fields)[8]);

  auto list = content->enter(kTagSequence);
  if (!list) return StatusGeneralError;
  const std::span<VarBind> slots(pdu.varBinds_);
  std::size_t decoded = 0;
  for (std::size_t i = 0; i < slots.size(); ++i) {
    const auto element = list->takeElement();
    if (!element) break;
    // A binding that cannot be read leaves its slot to the next one.
    if (element->tag == kTagSequence && readBinding(element->content, slots[decoded])) ++decoded;
  }
  const bool complete = decoded == slots.size() && pdu.errorStatus_ == 0;
  return complete ? StatusSuccess : StatusGeneralError;
} catch (const std::bad_alloc&) {
  return StatusGeneralError;
}

int MessageCodec::decodeTrapPacket(std::span<const std::uint8_t> message, TrapPDU& trap) noexcept try {
  auto content = enterMessage(message, kTagTrap);
  if (!content) return StatusGeneralError;
  TrapPDU decoded;
  const auto enterprise = content->enter(OIDCodec::kTag);
  if (!enterprise || !fill(decoded.enterprise_, *enterprise)) return StatusGeneralError;

  static_cast<void>(decoded.source_.setValue("0.0.0.0"));
  const auto source = content->enter(kTagIPAddress);
  if (source && source->remaining() > 0 && !fill(decoded.source_, *source)) return StatusGeneralError;

  const auto generic = content->enter(kTagInteger);
  const auto specific = content->enter(kTagInteger);
  const auto time = content->enter(kTagTimeTicks);
  auto list = content->enter(kTagSequence);
  if (!generic || !specific || !time || !list) return StatusGeneralError;
  const auto trapType = readInteger(*generic);
  const auto trapCode = readInteger(*specific);
  if (!trapType || !trapCode || !fill(decoded.time_, *time)) return StatusGeneralError;
  decoded.trapType_ = *trapType;
  decoded.trapCode_ = *trapCode;

  while (list->remaining() > 0) {
    const auto binding = list->enter(kTagSequence);
    if (!binding || !readBinding(*binding, decoded.varBinds_.emplace_back())) return StatusGeneralError;
  }
  if (decoded.isValid() != StatusSuccess) return StatusGeneralError;
  trap = std::move(decoded);
  return StatusSuccess;
} catch (const std::bad_alloc&) {
  return StatusGeneralError;
}

int MessageCodec::decodeTrapPacket(const _MESSAGE* message, TrapPDU& trap) noexcept {
  if (message == nullptr || message->length > sizeof(message->data)) return StatusGeneralError;
  return decodeTrapPacket(asBytes({message->data, message->length}), trap);
}

}  // namespace ztsnmp
