// Texts that claim to be addresses and object identifiers. The system's own parser has a say about IPv6.

#include <arpa/inet.h>

#include <array>
#include <string>
#include <utility>

#include "MessageCodec.h"
#include "Require.h"
#include "ztsnmp/ztsnmp.h"

namespace {

template <class Value>
void checkKept(const Value& value, const std::string& text, bool valid) {
  Value copy;
  copy = value;
  const Value moved(std::move(copy));
  require((moved.getValue() == text) == (valid || text.empty()), "a value keeps its text or has none");
}

void checkIPv6(const std::string& text) {
  const bool valid = IPv6Address::isValidAddress(text.c_str()) == 0;
  checkKept(IPv6Address(text.c_str()), text, valid);
  const std::string address = text.substr(0, text.find('%'));
  // The system refuses leading zeros in a dotted tail, which are fine here.
  if (address.find('.') != std::string::npos) return;
  std::array<unsigned char, 16> bytes;
  require(valid == (inet_pton(AF_INET6, address.c_str(), bytes.data()) == 1), "IPv6 is what the system takes for it");
}

void checkIPv4(const std::string& text) {
  const bool valid = IPAddress::isValidAddress(text.c_str()) == 0;
  checkKept(IPAddress(text.c_str()), text, valid);
  if (!valid) return;
  require(text.size() <= 15 && text.size() >= 7, "IPv4 has 7 to 15 characters");
  VarBind binding{OID("1.3")};
  binding.setValue(IPAddress(text.c_str()));
  ReqRespPDU pdu(&binding, 1);
  std::array<std::uint8_t, 100> out;
  ztsnmp::MessageCodec::setHeader(pdu, PDUSetRequest, 0);
  // 22 bytes of headers, 3 of the name, 6 of the value
  require(ztsnmp::MessageCodec::encodePacket(pdu, "", out) == 31, "a valid IPv4 address can be encoded");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = std::string(data, data + size).c_str();
  checkIPv6(text);
  checkIPv4(text);
  OID oid;
  require((oid.setValue(text.c_str()) == 0) == (oid.getValue() == text), "an OID keeps its text or refuses it");
  checkKept(oid, text, OID::isValidValue(text.c_str()) == 0);
  VarBind binding{oid};
  ReqRespPDU pdu(&binding, 1);
  ztsnmp::MessageCodec::setHeader(pdu, PDUGetRequest, 0);
  std::array<std::uint8_t, ztsnmp::MessageCodec::kMaxMessage> out;
  require(ztsnmp::MessageCodec::encodePacket(pdu, "public", out) > 0, "a valid OID encodes or is left out");
  return 0;
}
