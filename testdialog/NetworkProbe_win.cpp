#include "NetworkProbe_win.h"

#include <winsock2.h>
#include <ws2tcpip.h>

#include <cstdint>
#include <cstring>

#include "CodePage.h"
#include "Handle.h"

namespace zt {
namespace {

struct SocketTraits {
  using Type = SOCKET;
  static Type Invalid() { return INVALID_SOCKET; }
  static void Close(Type handle) { closesocket(handle); }
};
using Socket = Handle<SocketTraits>;

class HostAddress {
 public:
  explicit HostAddress(const std::string& host) {
    addrinfo hints = {};
    hints.ai_socktype = SOCK_STREAM;
    if (getaddrinfo(host.c_str(), nullptr, &hints, &first_) != 0) first_ = nullptr;
  }
  ~HostAddress() {
    if (first_) freeaddrinfo(first_);
  }
  HostAddress(const HostAddress&) = delete;
  HostAddress& operator=(const HostAddress&) = delete;
  const addrinfo* First() const { return first_; }

 private:
  addrinfo* first_ = nullptr;
};

bool Answers(const addrinfo& host, std::uint16_t port) {
  timeval longest = {1, 500000};
  const Socket socket(::socket(host.ai_family, SOCK_STREAM, IPPROTO_TCP));
  u_long nonBlocking = 1;
  if (!socket || ioctlsocket(socket.Get(), static_cast<long>(FIONBIO), &nonBlocking) != 0) return false;
  sockaddr_storage address = {};
  std::memcpy(&address, host.ai_addr, host.ai_addrlen);
  // The port stands at the same place for both families.
  reinterpret_cast<sockaddr_in&>(address).sin_port = htons(port);
  if (connect(socket.Get(), reinterpret_cast<const sockaddr*>(&address), static_cast<int>(host.ai_addrlen)) == 0) {
    return true;
  }
  if (const int error = WSAGetLastError(); error != WSAEWOULDBLOCK) return error == WSAECONNREFUSED;
  fd_set connected = {1, {socket.Get()}};
  fd_set failed = {1, {socket.Get()}};
  if (select(0, nullptr, &connected, &failed, &longest) <= 0) return false;
  int error = 0;
  int length = sizeof(error);
  getsockopt(socket.Get(), SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error), &length);
  return error == 0 || error == WSAECONNREFUSED;
}

}  // namespace

Reachability ProbeNetwork(const std::wstring& address, const ExchangeGate& gate) {
  constexpr std::uint16_t kPorts[] = {9100, 80};
  const HostAddress host(ToNarrow(address));
  if (!host.First()) return Reachability::NoName;
  for (const std::uint16_t port : kPorts) {
    if (!IsOpen(gate)) return Reachability::Unknown;
    if (Answers(*host.First(), port)) return Reachability::Answers;
  }
  return Reachability::Silent;
}

}  // namespace zt
