#include "IPInterface.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace ztsnmp {

namespace {

constexpr const char* kAgentPort = "161";
constexpr const char* kBroadcastAddress = "255.255.255.255";
constexpr const char* kAllNodesAddress = "FF02::1";
constexpr const char* kProbePort = "3301";
constexpr std::string_view kProbe = "STATCHECK";
constexpr std::string_view kLinkLocalPrefix = "fe80:";
constexpr std::size_t kMaxLinkLocals = 50;

std::string_view withoutZone(std::string_view text) { return text.substr(0, text.find('%')); }

std::uint32_t zoneOf(std::string_view text) {
  std::uint32_t zone = 0;
  if (const auto percent = text.find('%'); percent != std::string_view::npos) {
    text.remove_prefix(percent + 1);
    std::from_chars(text.data(), text.data() + text.size(), zone);
  }
  return zone;
}

}  // namespace

int IPInterface::initialize() {
  if (initialized_) return StatusSuccess;
  std::vector<SocketAddress> locals;
  switch (localAddresses(locals)) {
    case LookupResult::NoData:
      return StatusCreateSocketError;
    case LookupResult::Failed:
      return StatusInitializationError;
    case LookupResult::Found:
      break;
  }
  sockets_.reserve(std::min(locals.size(), kMaxSockets));
  for (const SocketAddress& local : locals) {
    if (sockets_.size() == kMaxSockets) break;
    if (const int status = openSocket(local); status != StatusSuccess) return status;
  }
  initialized_ = true;
  return StatusSuccess;
}

int IPInterface::openSocket(SocketAddress local) {
  if (local.family == Family::Other) return StatusSuccess;
  if (local.family == Family::IPv6) {
    // Only link-local IPv6 addresses are used, on purpose: printers are neighbours.
    if (!numericText(local).starts_with(kLinkLocalPrefix)) return StatusSuccess;
    const std::uint32_t scope = scopeOf(local);
    if (scope == 0) return StatusSuccess;
    setScope(local, scope);
  }
  Socket socket = Socket::open(local.family);
  if (!socket.isValid()) return StatusCreateSocketError;
  if (!socket.setNonBlocking()) return StatusIoControlError;
  // A socket that cannot be bound is kept: the system then chooses its address when it sends.
  static_cast<void>(socket.bind(local));
  sockets_.push_back(std::move(socket));
  return StatusSuccess;
}

std::uint32_t IPInterface::scopeOf(const SocketAddress& local) {
  // The scan of the adapters takes milliseconds, more than all the rest together, so it waits until a link-local
  // address asks for it.
  if (!linkLocals_) {
    linkLocals_ = linkLocalAddresses();
    if (linkLocals_->size() > kMaxLinkLocals) linkLocals_->resize(kMaxLinkLocals);
  }
  // Several adapters may have one address (a VLAN has that of its adapter): the zone, when there is one, tells which.
  const std::string exact = linkLocalText(local);
  const std::string text = numericText(local);
  std::uint32_t scope = 0;
  for (const std::string& known : *linkLocals_) {
    if (known == exact) return zoneOf(known);
    if (scope == 0 && withoutZone(known) == withoutZone(text)) scope = zoneOf(known);
  }
  return scope;
}

int IPInterface::transmit(const Target& target, std::span<const std::uint8_t> data) {
  return transmitTo(target.getIPAddress().getValue(), data);
}

int IPInterface::transmitTo(const char* address, std::span<const std::uint8_t> data) {
  if (!initialized_) return StatusInitializationError;
  if (address == nullptr || data.empty()) return StatusTransmitInvalidRequest;
  if (!setBroadcast(false)) return StatusTransmitOptionError;
  SocketAddress agent;
  if (resolveNumeric(address, kAgentPort, agent) != LookupResult::Found) return StatusTransmitInvalidRequest;
  const auto fits = [&](const Socket& socket) { return socket.family() == agent.family; };
  if (std::none_of(sockets_.begin(), sockets_.end(), fits)) return StatusTransmitInvalidRequest;

  ReadySet ready;
  if (const int status = wait(WaitFor::Writable, ready); status != StatusSuccess) return status;
  // From each, as only the answer tells which local address leads to the agent.
  bool sent = false;
  for (std::size_t i = 0; i < sockets_.size(); ++i) {
    if (ready[i] && fits(sockets_[i]) && sockets_[i].sendTo(data, agent)) sent = true;
  }
  return sent ? StatusSuccess : StatusTransmitSendError;
}

int IPInterface::broadcast(std::span<const std::uint8_t> data) {
  if (!initialized_) return StatusInitializationError;
  if (data.empty()) return StatusBroadcastInvalidRequest;
  if (!setBroadcast(true)) return StatusBroadcastOptionError;
  SocketAddress everyone;
  SocketAddress allNodes;
  if (resolveNumeric(kBroadcastAddress, kAgentPort, everyone) != LookupResult::Found ||
      resolveNumeric(kAllNodesAddress, kAgentPort, allNodes) != LookupResult::Found) {
    return StatusTransmitInvalidRequest;
  }

  ReadySet ready;
  if (const int status = wait(WaitFor::Writable, ready); status != StatusSuccess) return status;
  // An adapter that leads nowhere does not keep the others from being heard.
  bool sent = false;
  for (Socket& socket : sockets_) {
    if (socket.sendTo(data, socket.family() == Family::IPv6 ? allNodes : everyone)) sent = true;
  }
  return sent ? StatusSuccess : StatusBroadcastSendError;
}

int IPInterface::receive(std::span<std::uint8_t> buffer, std::size_t& received, std::string* sender) {
  if (!initialized_) return StatusInitializationError;
  if (buffer.empty()) return StatusReceiveInvalidRequest;
  if (retryCount_ < 0) return StatusReceiveWaitError;

  ReadySet ready;
  // The request is not sent again between the waits, on purpose: a printer that wakes up slowly would answer twice,
  // and the second answer would pass for that of the next request.
  if (const int status = wait(WaitFor::Readable, ready); status != StatusSuccess) return status;
  for (std::size_t i = 0; i < sockets_.size(); ++i) {
    if (!ready[i]) continue;
    SocketAddress from;
    if (!sockets_[i].receiveFrom(buffer, received, from)) return StatusReceiveError;
    if (sender != nullptr) *sender = numericText(from);
    break;
  }
  return StatusSuccess;
}

int IPInterface::statusCheck() {
  if (initialize() != StatusSuccess) return 0;
  SocketAddress everyone;
  if (resolveNumeric(kBroadcastAddress, kProbePort, everyone) != LookupResult::Found) return 0;
  Socket probe = Socket::open(Family::IPv4);
  const bool ready = probe.isValid() && probe.setNonBlocking() && probe.setBroadcast(true);
  const std::span bytes(static_cast<const std::uint8_t*>(static_cast<const void*>(kProbe.data())), kProbe.size());
  return ready && probe.sendTo(bytes, everyone) ? 1 : 0;
}

bool IPInterface::setBroadcast(bool on) {
  return std::all_of(sockets_.begin(), sockets_.end(), [on](Socket& socket) { return socket.setBroadcast(on); });
}

int IPInterface::wait(WaitFor what, ReadySet& ready) const {
  const int failed = what == WaitFor::Readable ? StatusReceiveWaitError : StatusTransmitTimeout;
  const int expired = what == WaitFor::Readable ? StatusTimeout : StatusTransmitSendError;
  int status = StatusSuccess;
  for (int retries = retryCount_; retries >= 0; --retries) {
    switch (waitForSockets(sockets_, what, std::chrono::seconds(timeout_), ready)) {
      case WaitResult::Ready:
        return StatusSuccess;
      case WaitResult::Expired:
        status = expired;
        break;
      case WaitResult::Failed:
        status = failed;
        break;
    }
  }
  return status;
}

}  // namespace ztsnmp
