#pragma once

#include <array>
#include <bitset>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace ztsnmp {

/// This header is all that the library knows of sockets. Sockets.cpp holds what the systems share; Sockets_win.cpp and
/// Sockets_posix.cpp hold what they do not.

/// kMaxSockets is the number of local addresses that are used at most.
constexpr std::size_t kMaxSockets = 50;

enum class Family : std::uint8_t { Other, IPv4, IPv6 };

/// SocketAddress is an address and a port in the form of the system, to be handed back to it.
struct SocketAddress {
  Family family = Family::Other;
  std::uint32_t length = 0;
  alignas(8) std::array<std::byte, 128> storage{};
};

/// LookupResult: NoData says that the name is known and has no address.
enum class LookupResult { Found, NoData, Failed };

/// resolve looks up the addresses of a host name or numeric address for UDP, in the order of the system. `service` is a
/// port number as text, or null for port 0. An empty name is nobody's: Failed.
[[nodiscard]] LookupResult resolve(const char* host, const char* service, std::vector<SocketAddress>& found);

/// resolveNumeric does the same for a numeric address, without asking anyone. The numbers of an IPv4 address are
/// decimal, with leading zeros too, as `IPAddress` reads them.
[[nodiscard]] LookupResult resolveNumeric(const char* address, const char* service, SocketAddress& found);

/// toSocketAddress copies the system's own form (a `sockaddr` of `length` bytes).
[[nodiscard]] SocketAddress toSocketAddress(const void* native, std::size_t length);

/// numericText renders an address without its port, for IPv6 with its zone; empty when the system cannot.
[[nodiscard]] std::string numericText(const SocketAddress& address);

/// linkLocalText renders a link-local IPv6 address with the number of its zone ("fe80::1%12"); empty for all others and
/// for an address without zone.
[[nodiscard]] std::string linkLocalText(const SocketAddress& address);

/// setScope puts the zone index into an IPv6 address.
void setScope(SocketAddress& address, std::uint32_t scope);

/// localAddresses answers the addresses of this machine that sockets are bound to, each with port 0. NoData also when
/// this machine does not know its name.
[[nodiscard]] LookupResult localAddresses(std::vector<SocketAddress>& found);

/// linkLocalAddresses answers the link-local IPv6 addresses of this machine as `linkLocalText`; none when the system
/// cannot tell.
[[nodiscard]] std::vector<std::string> linkLocalAddresses();

/// isMappingPresent answers whether shared memory of this name and size can be opened and read.
[[nodiscard]] bool isMappingPresent(const char* name, std::size_t size);

/// Socket owns one UDP socket. Operations answer whether they worked.
class Socket {
 public:
  /// open answers a socket of the family, which is not valid when the system refuses.
  [[nodiscard]] static Socket open(Family family);

  Socket(Socket&& other) noexcept;
  Socket& operator=(Socket&& other) noexcept;
  ~Socket();

  [[nodiscard]] bool isValid() const noexcept { return handle_ != kNone; }
  [[nodiscard]] Family family() const noexcept { return family_; }
  [[nodiscard]] std::intptr_t handle() const noexcept { return handle_; }

  [[nodiscard]] bool setNonBlocking();
  [[nodiscard]] bool setBroadcast(bool on);
  [[nodiscard]] bool bind(const SocketAddress& address);
  [[nodiscard]] bool sendTo(std::span<const std::uint8_t> data, const SocketAddress& address);

  /// receiveFrom reads one datagram; one that does not fit the buffer is a failure.
  [[nodiscard]] bool receiveFrom(std::span<std::uint8_t> buffer, std::size_t& received, SocketAddress& sender);

 private:
  static constexpr std::intptr_t kNone = -1;

  Socket(std::intptr_t handle, Family family) noexcept : handle_(handle), family_(family) {}

  std::intptr_t handle_;
  Family family_;
};

enum class WaitFor { Readable, Writable };
enum class WaitResult { Ready, Expired, Failed };
using ReadySet = std::bitset<kMaxSockets>;

/// waitForSockets waits until one of the sockets (kMaxSockets at most) is ready or the time is over; `ready[i]` tells
/// it for `sockets[i]`.
[[nodiscard]] WaitResult waitForSockets(std::span<const Socket> sockets, WaitFor what,
                                        std::chrono::milliseconds timeout, ReadySet& ready);

}  // namespace ztsnmp
