// Values and names made of the input: what is written can be read back and is the same.

#include <string>
#include <vector>

#include "Input.h"
#include "MessageCodec.h"
#include "Require.h"
#include "ztsnmp/ztsnmp.h"

namespace {

std::string objectIdentifier(Input& input) {
  std::string text = std::to_string(input.byte() % 3) + '.' + std::to_string(input.byte() % 40);
  for (int arcs = input.byte() % 16; arcs > 0; --arcs) text += '.' + std::to_string(input.number() & 0x7FFFFFFF);
  return text;
}

/// From 0xFF800000 upward numbers are not read back, on purpose.
std::uint32_t unsignedNumber(Input& input) {
  const std::uint32_t value = input.number();
  return value < 0xFF800000 ? value : 0xFF7FFFFF;
}

void setValue(VarBind& binding, Input& input) {
  switch (input.byte() % 7) {
    case 0:
      binding.setValue(Integer(static_cast<int>(input.number())));
      break;
    case 1: {
      std::string bytes(1 + input.number() % 1024, '\0');
      for (char& c : bytes) c = static_cast<char>(input.byte());
      binding.setValue(OctetString(bytes.data(), bytes.size()));
      break;
    }
    case 2:
      binding.setValue(OID(objectIdentifier(input).c_str()));
      break;
    case 3: {
      std::string text;
      for (int i = 0; i < 4; ++i) text += (i > 0 ? "." : "") + std::to_string(input.byte());
      binding.setValue(IPAddress(text.c_str()));
      break;
    }
    case 4:
      binding.setValue(Counter(unsignedNumber(input)));
      break;
    case 5:
      binding.setValue(Gauge(unsignedNumber(input)));
      break;
    default:
      binding.setValue(TimeTicks(unsignedNumber(input)));
      break;
  }
}

std::string contentOf(const VarBind& binding) {
  std::string text = std::string(binding.getOID().getValue()) + ' ' + std::to_string(binding.getValue().getDataType());
  if (binding.getValue().getDataType() != DataTypeOctetString) return text + binding.getValue().toString();
  return text + static_cast<const OctetString&>(binding.getValue()).toHexString();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  ReqRespPDU pdu;
  std::vector<std::string> before;
  for (int i = 0; i < 10 && !input.empty(); ++i) {
    VarBind binding{OID(objectIdentifier(input).c_str())};
    setValue(binding, input);
    before.push_back(contentOf(binding));
    require(pdu.addVarBind(binding) == 0, "the binding is valid");
  }
  ztsnmp::MessageCodec::setHeader(pdu, PDUSetRequest, 0);
  std::vector<std::uint8_t> out(ztsnmp::MessageCodec::kMaxMessage);
  const int length = ztsnmp::MessageCodec::encodePacket(pdu, "", out);
  if (length < 0) return 0;  // too much for one message

  // An encoder with exactly that room gives the same bytes, one with less fails.
  std::vector<std::uint8_t> exact(static_cast<std::size_t>(length));
  require(ztsnmp::MessageCodec::encodePacket(pdu, "", exact) == length, "the room suffices");
  out.resize(exact.size());
  require(exact == out, "the bytes do not depend on the room");
  std::vector<std::uint8_t> less(exact.size() - 1);
  require(ztsnmp::MessageCodec::encodePacket(pdu, "", less) == -1, "less room does not suffice");

  // 30 length 02 01 00 04 00 tag
  const std::size_t tag = 1 + (exact[1] < 0x80 ? 1U : exact[1] == 0x81 ? 2U : 3U) + 5;
  require(exact[tag] == 0xA3, "the PDU stands where it should");
  exact[tag] = 0xA2;
  if (pdu.getVarBindCount() == 0) return 0;
  require(ztsnmp::MessageCodec::decodePacket(exact, pdu) == 0, "what was written can be read");
  for (std::size_t i = 0; i < before.size(); ++i) {
    require(contentOf(pdu.getVarBind(static_cast<unsigned>(i))) == before[i], "and is the same");
  }
  return 0;
}
