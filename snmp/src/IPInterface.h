#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CommInterface.h"
#include "Sockets.h"

namespace ztsnmp {

/// IPInterface is UDP over IPv4 and IPv6 to the agent port 161, with one socket for each local address: for all IPv4
/// addresses and for the link-local IPv6 addresses whose zone is known.
class IPInterface : public CommInterface {
 public:
  /// initialize opens and binds the sockets: -30 when this machine has no address or a socket is refused, -31 when one
  /// cannot be made non-blocking, -32 when the machine's addresses cannot be looked up.
  int initialize() override;

  /// broadcast sends to 255.255.255.255 and ff02::1: -32 before `initialize`, -36 without data, -38, -39 when none of
  /// the sockets could send, -40, -41 and -43 as `transmit`.
  int broadcast(std::span<const std::uint8_t> data) override;

  /// transmit and transmitTo: -32 before `initialize`; -40 without address or data, for an address that is not numeric
  /// or that no socket's family fits; -42; -41 or -43 when no socket becomes writable; -43 when none could send.
  int transmit(const Target& target, std::span<const std::uint8_t> data) override;
  int transmitTo(const char* address, std::span<const std::uint8_t> data) override;

  /// receive: -32 before `initialize`; -44 without a buffer; -45 for a negative retry count or a failing wait; -37 when
  /// nothing came in time; -47 when the read fails.
  int receive(std::span<std::uint8_t> buffer, std::size_t& received, std::string* sender) override;

  void setRetryCount(int count) override { retryCount_ = count; }
  void setTimeout(int seconds) override { timeout_ = seconds; }

  /// statusCheck broadcasts the 9 bytes "STATCHECK" to UDP port 3301 over IPv4.
  int statusCheck() override;

  [[nodiscard]] int getAddressingMode() const override { return kAddressingEach; }
  [[nodiscard]] int getProtocol() const override { return kProtocolUDP; }

 private:
  [[nodiscard]] int openSocket(SocketAddress local);
  /// scopeOf answers the zone index of a local link-local address, 0 when it is not known.
  [[nodiscard]] std::uint32_t scopeOf(const SocketAddress& local);
  [[nodiscard]] bool setBroadcast(bool on);
  /// wait waits with retries for one of the sockets: 0, or the code of the last thing that went wrong.
  [[nodiscard]] int wait(WaitFor what, ReadySet& ready) const;

  int timeout_ = 3;
  int retryCount_ = 1;
  std::vector<Socket> sockets_;
  bool initialized_ = false;
  std::optional<std::vector<std::string>> linkLocals_;
};

}  // namespace ztsnmp
