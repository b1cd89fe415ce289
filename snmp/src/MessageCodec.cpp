#include "MessageCodec.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <new>
#include <optional>
#include <utility>

#include "BerWriter.h"
#include "ztsnmp/IPAddress.h"
#include "ztsnmp/Numbers.h"
#include "ztsnmp/OctetString.h"

namespace ztsnmp {

namespace {

constexpr std::uint8_t kTagOctetString = 0x04;
constexpr std::uint8_t kTagObjectIdentifier = 0x06;
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
/// fixed places, and so do old agents.
void writeHeaderField(BerWriter& writer, int value) {
  writer.bytes(std::array{kTagInteger, std::uint8_t{1}, static_cast<std::uint8_t>(value)});
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
  const auto tag = static_cast<std::uint8_t>(value.getDataType());
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
      return writer.objectIdentifier(static_cast<const OID&>(value).getValue());
    case DataTypeIPAddress:
      return writeIPAddress(writer, value.toString());
    case DataTypeCounter:
      writer.unsignedNumber(tag, static_cast<const Counter&>(value).getValue());
      return true;
    case DataTypeGauge:
      writer.unsignedNumber(tag, static_cast<const Gauge&>(value).getValue());
      return true;
    case DataTypeTimeTicks:
      writer.unsignedNumber(tag, static_cast<const TimeTicks&>(value).getValue());
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
  if (!writer.objectIdentifier(binding.getOID().getValue())) return false;
  writer.header(kTagSequence, start);
  return true;
}

// ---- reading

bool fill(Integer& value, BerReader content) {
  const auto number = readInteger(content);
  return number && value.setValue(*number) == StatusSuccess;
}

template <typename Unsigned>
bool fillUnsigned(Unsigned& value, BerReader content) {
  const auto number = readUnsigned(content);
  return number && value.setValue(*number) == StatusSuccess;
}

bool fill(Counter& value, BerReader content) { return fillUnsigned(value, content); }
bool fill(Gauge& value, BerReader content) { return fillUnsigned(value, content); }
bool fill(TimeTicks& value, BerReader content) { return fillUnsigned(value, content); }

bool fill(OctetString& value, BerReader content) {
  const auto bytes = content.takeRest();
  // Empty content may come as a null span; the value wants to see data.
  return value.setValue(bytes.empty() ? "" : asText(bytes), bytes.size()) == StatusSuccess;
}

bool fill(OID& value, BerReader content) {
  OidText text;
  return readObjectIdentifier(content, text) && value.setValue(text.data()) == StatusSuccess;
}

bool fill(NetworkAddress& value, BerReader content) {
  if (content.remaining() > kMaxIPAddressContent) return false;
  const auto octets = content.take(kIPAddressOctets);
  if (!octets) return false;
  const auto o = *octets;
  char text[16];
  std::snprintf(text, sizeof(text), "%d.%d.%d.%d", o[0], o[1], o[2], o[3]);
  // An address that refuses the text keeps its old value, and the binding counts as read all the same, on purpose: an
  // agent that echoes the set of an address is not an error.
  static_cast<void>(value.setValue(text));
  return true;
}

template <typename Value>
std::unique_ptr<SNMPDataType> readNew(BerReader content) {
  auto value = std::make_unique<Value>();
  if (!fill(*value, content)) return nullptr;
  return value;
}

/// A new value of the class, other than `Null`, that the tag names; null when there is no such class or the content is
/// refused. Counter64 and the exceptions of SNMPv2 are among the tags without a class.
std::unique_ptr<SNMPDataType> readNewValue(const BerReader::Element& element) {
  switch (element.tag) {
    case DataTypeInteger:
      return readNew<Integer>(element.content);
    case DataTypeOctetString:
      return readNew<OctetString>(element.content);
    case DataTypeOID:
      return readNew<OID>(element.content);
    case DataTypeIPAddress:
      return readNew<IPAddress>(element.content);
    case DataTypeCounter:
      return readNew<Counter>(element.content);
    case DataTypeGauge:
      return readNew<Gauge>(element.content);
    case DataTypeTimeTicks:
      return readNew<TimeTicks>(element.content);
    default:
      return nullptr;
  }
}

/// Reads into a value that is there; its class must be the one that the tag names.
bool readInto(SNMPDataType& value, const BerReader::Element& element) {
  if (value.getDataType() != element.tag) return false;
  switch (value.getDataType()) {
    case DataTypeInteger:
      return fill(static_cast<Integer&>(value), element.content);
    case DataTypeOctetString:
      return fill(static_cast<OctetString&>(value), element.content);
    case DataTypeOID:
      return fill(static_cast<OID&>(value), element.content);
    case DataTypeIPAddress:
      return fill(static_cast<NetworkAddress&>(value), element.content);
    case DataTypeCounter:
      return fill(static_cast<Counter&>(value), element.content);
    case DataTypeGauge:
      return fill(static_cast<Gauge&>(value), element.content);
    case DataTypeTimeTicks:
      return fill(static_cast<TimeTicks&>(value), element.content);
    case DataTypeNull:
    case DataTypeNone:
      break;
  }
  return false;
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
  for (int i = pdu.varBindCount_; i-- > 0;) {
    VarBind& binding = pdu.varBinds_[static_cast<std::size_t>(i)];
    if (asksForValues) binding.setNull();
    const std::size_t start = writer.mark();
    // The other bindings go out all the same, on purpose; the answer then shows the gap.
    if (!writeBinding(writer, binding, pdu.type_)) writer.rewind(start);
  }
  writer.header(kTagSequence, 0);
  writeHeaderField(writer, pdu.errorIndex_);
  writeHeaderField(writer, pdu.errorStatus_);
  writeHeaderField(writer, pdu.requestId_);
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
  auto name = content.enter(kTagObjectIdentifier);
  OidText text;
  const auto length = name ? readObjectIdentifier(*name, text) : std::nullopt;
  if (!length) return false;
  const auto element = content.takeElement();
  if (!element) return false;
  if (slot.value_) {
    if (!readInto(*slot.value_, *element)) return false;
  } else if (element->tag == DataTypeNull) {
    // X.690, 8.8.2: no content.
    if (element->content.remaining() > 0) return false;
    slot.setNull();
  } else {
    auto value = readNewValue(*element);
    if (!value) return false;
    slot.value_ = std::move(value);
    slot.holdsNull_ = false;
  }
  // Rendered here, so it keeps the rule of an OID and is not checked again.
  slot.name_.text_.assign(text.data(), *length);
  return true;
}

int MessageCodec::decodePacket(std::span<const std::uint8_t> message, ReqRespPDU& pdu) noexcept try {
  auto content = enterMessage(message, kTagGetResponse);
  if (!content) return StatusGeneralError;

  // Three fields of 02 01 nn each are assumed, on purpose, and only nn is read. The request-id is not compared.
  const auto fields = content->take(9);
  if (!fields) return StatusGeneralError;
  pdu.requestId_ = (*fields)[2];
  setError(pdu, (*fields)[5], (*fields)[8]);

  auto list = content->enter(kTagSequence);
  if (!list) return StatusGeneralError;
  int decoded = 0;
  for (int i = 0; i < pdu.varBindCount_; ++i) {
    const auto element = list->takeElement();
    if (!element) break;
    // A binding that cannot be read leaves its slot to the next one.
    if (element->tag == kTagSequence && readBinding(element->content, pdu.getVarBind(static_cast<unsigned>(decoded)))) {
      ++decoded;
    }
  }
  const bool complete = decoded == pdu.varBindCount_ && pdu.errorStatus_ == 0;
  return complete ? StatusSuccess : StatusGeneralError;
} catch (const std::bad_alloc&) {
  return StatusGeneralError;
}

int MessageCodec::decodeTrapPacket(std::span<const std::uint8_t> message, TrapPDU& trap) noexcept try {
  auto content = enterMessage(message, kTagTrap);
  if (!content) return StatusGeneralError;
  TrapPDU decoded;
  const auto enterprise = content->enter(kTagObjectIdentifier);
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

  // Counted first, so that the array is made once.
  for (BerReader ahead = *list; ahead.remaining() > 0; ++decoded.varBindCount_) {
    if (!ahead.enter(kTagSequence)) return StatusGeneralError;
  }
  if (decoded.varBindCount_ > 0) {
    decoded.varBinds_ = std::make_unique<VarBind[]>(static_cast<std::size_t>(decoded.varBindCount_));
  }
  for (int i = 0; i < decoded.varBindCount_; ++i) {
    const auto binding = list->enter(kTagSequence);
    if (!binding || !readBinding(*binding, decoded.varBinds_[static_cast<std::size_t>(i)])) return StatusGeneralError;
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
