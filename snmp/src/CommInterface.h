#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "ztsnmp/Target.h"

namespace ztsnmp {

/// kAddressingEach is the addressing mode of a transport that wants the target's addresses one by one.
constexpr int kAddressingEach = 2;

/// kProtocolUDP is what `getProtocol` of UDP over IP answers.
constexpr int kProtocolUDP = -2002;

/// CommInterface carries datagrams to agents and back. All operations answer 0 or a negative status unless they say
/// something else.
class CommInterface {
 public:
  virtual ~CommInterface() = default;

  /// initialize makes the transport ready; further calls change nothing.
  virtual int initialize() = 0;

  /// broadcast sends one datagram to all hosts of the local networks; 0 when it went out to one network at least.
  virtual int broadcast(std::span<const std::uint8_t> data) = 0;

  /// transmit sends one datagram to the target's IPv4 address.
  virtual int transmit(const Target& target, std::span<const std::uint8_t> data) = 0;

  /// receive waits for one datagram for (retries + 1) times the timeout at most, and puts it into the buffer. From
  /// whomever: an agent with several addresses may answer from another one than was asked, and to a broadcast all do.
  /// `received` becomes its length; `sender`, when not null, the sender's address as text.
  virtual int receive(std::span<std::uint8_t> buffer, std::size_t& received, std::string* sender) = 0;

  virtual void setRetryCount(int count) = 0;
  virtual void setTimeout(int seconds) = 0;

  /// statusCheck answers 1 when a probe could be sent, else 0.
  virtual int statusCheck() = 0;

  [[nodiscard]] virtual int getAddressingMode() const = 0;
  [[nodiscard]] virtual int getProtocol() const = 0;

  /// transmitTo sends one datagram to one address, a numeric text.
  virtual int transmitTo(const char* address, std::span<const std::uint8_t> data) = 0;
};

}  // namespace ztsnmp
