#include "SNMPPeer.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <limits>
#include <stdexcept>
#include <utility>

#include "BerReader.h"
#include "BerWriter.h"
#include "OIDCodec.h"
#include "Sockets.h"

namespace zt {
namespace {

using ztsnmp::BerReader;
using ztsnmp::BerWriter;
using ztsnmp::OIDCodec;

constexpr std::uint8_t kOctetString = 0x04;
constexpr std::uint8_t kSequence = 0x30;
constexpr std::uint8_t kCounter = 0x41;
constexpr std::uint8_t kGetNext = 0xA1;
constexpr std::uint8_t kResponse = 0xA2;
constexpr int kNoSuchName = 2;  // RFC 1157, section 4.1.2

std::span<const std::uint8_t> BytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

template <class Write>
SNMPPeer::Bytes Written(Write write) {
  std::array<std::uint8_t, 8192> buffer;
  BerWriter writer(buffer);
  write(writer);
  if (writer.failed()) throw std::length_error("longer than any message of the simulated agent");
  const auto bytes = writer.written();
  return {bytes.begin(), bytes.end()};
}

}  // namespace

SNMPPeer::SNMPPeer(const char* address) {
  ztsnmp::SocketAddress local;
  auto socket = ztsnmp::Socket::open(ztsnmp::Family::IPv4);
  if (ztsnmp::resolveNumeric(address, "161", local) != ztsnmp::LookupResult::Found || !socket.bind(local)) {
    throw std::runtime_error("UDP port 161 is not to be had: run this test inside sim/in-namespace");
  }
  thread_ = std::thread([this, socket = std::move(socket)]() mutable { Serve(socket); });
}

SNMPPeer::~SNMPPeer() {
  stopped_ = true;
  thread_.join();
}

void SNMPPeer::Set(const std::string& name, std::string_view text) {
  Set(name, Written([text](BerWriter& writer) { writer.octets(kOctetString, BytesOf(text)); }));
}

void SNMPPeer::Set(const std::string& name, std::int64_t number) {
  Set(name, Written([number](BerWriter& writer) {
        if (number <= std::numeric_limits<std::int32_t>::max())
          return writer.integer(static_cast<std::int32_t>(number));
        writer.unsignedNumber(kCounter, static_cast<std::uint32_t>(number));
      }));
}

SNMPPeer::Name SNMPPeer::Arcs(std::string_view dotted) {
  Name arcs(1);
  for (const char character : dotted) {
    if (character == '.') {
      arcs.push_back(0);
    } else {
      arcs.back() = arcs.back() * 10 + static_cast<std::uint32_t>(character - '0');
    }
  }
  return arcs;
}

void SNMPPeer::Serve(ztsnmp::Socket& socket) {
  while (!stopped_) {
    ztsnmp::ReadySet ready;
    std::array<std::uint8_t, 2048> buffer;
    std::size_t received = 0;
    ztsnmp::SocketAddress client;
    const auto result =
        ztsnmp::waitForSockets({&socket, 1}, ztsnmp::WaitFor::Readable, std::chrono::milliseconds(20), ready);
    if (result != ztsnmp::WaitResult::Ready || !socket.receiveFrom(buffer, received, client)) continue;
    // A request comes from each adapter; outside a network of one's own there are others than the loopback.
    if (!ztsnmp::numericText(client).starts_with("127.")) continue;
    try {
      const Bytes answer = Answer(std::span(buffer).first(received));
      if (!answer.empty()) static_cast<void>(socket.sendTo(answer, client));
    } catch (const std::bad_optional_access&) {  // no request of SNMP
    }
  }
}

SNMPPeer::Bytes SNMPPeer::Answer(std::span<const std::uint8_t> request) {
  BerReader message = BerReader(request).enter(kSequence).value();
  message.takeElement().value();  // version
  const auto sentCommunity = message.takeElement().value().content.takeRest();
  auto [type, pdu] = message.takeElement().value();
  for (int i = 0; i < 3; ++i) pdu.takeElement().value();  // request-id, error-status, error-index
  BerReader list = pdu.enter(kSequence).value();
  const bool next = type == kGetNext;
  std::string line = next ? "next" : "get";

  std::vector<std::pair<std::string, Bytes>> bindings;
  int missing = 0;
  bool answered = std::ranges::equal(sentCommunity, BytesOf(community));
  while (list.remaining() > 0) {
    OID asked;
    if (!OIDCodec::read(list.enter(kSequence).value().enter(OIDCodec::kTag).value(), asked)) return {};
    const std::string name = asked.getValue();
    line += " " + name;
    answered = answered && std::ranges::find(silent, name) == silent.end();
    const auto found = next ? objects_.upper_bound(Arcs(name)) : objects_.find(Arcs(name));
    if (found == objects_.end()) {
      bindings.emplace_back(name, Written([](BerWriter& writer) { writer.null(); }));
      if (missing == 0) missing = static_cast<int>(bindings.size());
    } else if (next) {
      bindings.emplace_back(nextName ? nextName(name) : found->second.name, found->second.element);
    } else {
      bindings.emplace_back(name, found->second.element);
    }
  }
  requests.push_back(line);
  if (!rawAnswers.empty()) {
    const Bytes answer = std::move(rawAnswers.front());
    rawAnswers.pop_front();
    return answer;
  }
  if (!answered) return {};
  return Written([&](BerWriter& writer) {
    for (auto binding = bindings.rbegin(); binding != bindings.rend(); ++binding) {
      const std::size_t mark = writer.mark();
      writer.bytes(binding->second);
      static_cast<void>(OIDCodec::write(writer, OID(binding->first.c_str())));
      writer.header(kSequence, mark);
    }
    writer.header(kSequence, 0);
    writer.integer(missing);
    writer.integer(missing > 0 ? kNoSuchName : 0);
    writer.integer(0);  // request-id
    writer.header(kResponse, 0);
    writer.octets(kOctetString, sentCommunity);
    writer.integer(0);  // version
    writer.header(kSequence, 0);
  });
}

}  // namespace zt
