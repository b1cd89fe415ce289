#include "SNMPPeer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <limits>
#include <stdexcept>

namespace zt {
namespace {

std::string Element(std::uint8_t tag, const std::string& content) {
  std::string element(1, static_cast<char>(tag));
  if (content.size() < 128) {
    element += static_cast<char>(content.size());
  } else {
    element += static_cast<char>(0x82);
    element += static_cast<char>(content.size() >> 8);
    element += static_cast<char>(content.size() & 0xFF);
  }
  return element + content;
}

std::string Number(std::int64_t number) {
  std::string content;
  for (int shift = 32; shift >= 0; shift -= 8) content += static_cast<char>(number >> shift);
  while (content.size() > 1 && ((content[0] == 0 && content[1] >= 0) || (content[0] == -1 && content[1] < 0))) {
    content.erase(0, 1);
  }
  return content;
}

std::string NameContent(const std::vector<std::uint32_t>& arcs) {
  std::string content(1, static_cast<char>(arcs.at(0) * 40 + arcs.at(1)));
  for (std::size_t i = 2; i < arcs.size(); ++i) {
    std::string arc(1, static_cast<char>(arcs[i] & 0x7F));
    for (std::uint32_t rest = arcs[i] >> 7; rest > 0; rest >>= 7) {
      arc.insert(arc.begin(), static_cast<char>(0x80 | (rest & 0x7F)));
    }
    content += arc;
  }
  return content;
}

std::string Dotted(const std::vector<std::uint32_t>& arcs) {
  std::string text;
  for (const std::uint32_t arc : arcs) text += (text.empty() ? "" : ".") + std::to_string(arc);
  return text;
}

std::vector<std::uint32_t> NameOf(const std::string& content) {
  std::vector<std::uint32_t> arcs = {static_cast<std::uint8_t>(content.at(0)) / 40u,
                                     static_cast<std::uint8_t>(content.at(0)) % 40u};
  std::uint32_t arc = 0;
  for (std::size_t i = 1; i < content.size(); ++i) {
    arc = arc << 7 | (static_cast<std::uint8_t>(content[i]) & 0x7F);
    if ((content[i] & 0x80) == 0) {
      arcs.push_back(arc);
      arc = 0;
    }
  }
  return arcs;
}

// Takes the next element off the front of the bytes and answers its content.
std::string TakeElement(std::string& bytes) {
  std::size_t length = static_cast<std::uint8_t>(bytes.at(1));
  std::size_t header = 2;
  if (length >= 0x80) {
    const std::size_t count = length & 0x7F;
    length = 0;
    for (std::size_t i = 0; i < count; ++i) length = length << 8 | static_cast<std::uint8_t>(bytes.at(header++));
  }
  std::string content = bytes.substr(header, length);
  bytes.erase(0, header + length);
  return content;
}

}  // namespace

SNMPPeer::SNMPPeer() {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(161);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socket_ = socket(AF_INET, SOCK_DGRAM, 0);
  if (socket_ < 0 || bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 || pipe(stop_) != 0) {
    throw std::runtime_error("UDP port 161 is not to be had: run this test inside sim/in-namespace");
  }
  thread_ = std::thread([this] { Serve(); });
}

SNMPPeer::~SNMPPeer() {
  close(stop_[1]);
  thread_.join();
  close(stop_[0]);
  close(socket_);
}

void SNMPPeer::Set(const std::string& name, std::int64_t number) {
  SetRaw(name, number > std::numeric_limits<std::int32_t>::max() ? 0x41 : 0x02, Number(number));
}

void SNMPPeer::SetRaw(const std::string& name, std::uint8_t tag, const std::string& content) {
  objects_[Arcs(name)] = {tag, content};
}

SNMPPeer::Name SNMPPeer::Arcs(const std::string& name) {
  Name arcs;
  for (std::size_t at = 0; at < name.size();) {
    std::size_t length = 0;
    arcs.push_back(static_cast<std::uint32_t>(std::stoul(name.substr(at), &length)));
    at += length + 1;
  }
  return arcs;
}

void SNMPPeer::Serve() {
  for (;;) {
    pollfd events[] = {{socket_, POLLIN, 0}, {stop_[0], POLLIN, 0}};
    poll(events, 2, -1);
    if (events[1].revents != 0) return;
    char buffer[2048];
    sockaddr_in sender{};
    socklen_t size = sizeof sender;
    const ssize_t length = recvfrom(socket_, buffer, sizeof buffer, 0, reinterpret_cast<sockaddr*>(&sender), &size);
    // A request comes from each adapter; outside a network of one's own there are others than the loopback.
    if (length <= 0 || ntohl(sender.sin_addr.s_addr) >> 24 != IN_LOOPBACKNET) continue;
    if (const std::optional<std::string> answer = Answer(std::string(buffer, static_cast<std::size_t>(length)))) {
      sendto(socket_, answer->data(), answer->size(), 0, reinterpret_cast<sockaddr*>(&sender), size);
    }
  }
}

std::optional<std::string> SNMPPeer::Answer(const std::string& request) {
  std::string message = request;
  std::string body = TakeElement(message);
  TakeElement(body);  // version
  if (TakeElement(body) != community) return std::nullopt;
  const bool next = body.at(0) == '\xA1';
  std::string pdu = TakeElement(body);
  for (int i = 0; i < 3; ++i) TakeElement(pdu);  // request-id, error-status, error-index
  std::string list = TakeElement(pdu);

  std::string bindings;
  int asked = 0;
  int missing = 0;
  std::string line = next ? "next" : "get";
  bool answered = true;
  while (!list.empty()) {
    std::string binding = TakeElement(list);
    const Name name = NameOf(TakeElement(binding));
    const std::string dotted = Dotted(name);
    line += " " + dotted;
    for (const std::string& mute : silent) answered = answered && mute != dotted;
    ++asked;

    const auto found = next ? objects_.upper_bound(name) : objects_.find(name);
    if (found == objects_.end()) {
      if (missing == 0) missing = asked;
      bindings += Element(0x30, Element(0x06, NameContent(name)) + Element(0x05, ""));
      continue;
    }
    const Name answeredName = next && nextName ? Arcs(nextName(dotted)) : found->first;
    bindings +=
        Element(0x30, Element(0x06, NameContent(answeredName)) + Element(found->second.tag, found->second.content));
  }
  requests.push_back(line);
  if (!answered) return std::nullopt;

  const std::string status =
      Element(0x02, Number(0)) + Element(0x02, Number(missing > 0 ? 2 : 0)) + Element(0x02, Number(missing));
  return Element(0x30, Element(0x02, std::string(1, '\0')) + Element(0x04, community) +
                           Element(0xA2, status + Element(0x30, bindings)));
}

}  // namespace zt
