#include "Sockets.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include "SystemSockets.h"
#include "ztsnmp/IPAddress.h"

namespace ztsnmp {

namespace {

NativeSocket nativeOf(std::intptr_t handle) { return static_cast<NativeSocket>(handle); }

const sockaddr* nativeOf(const SocketAddress& address) {
  return static_cast<const sockaddr*>(static_cast<const void*>(address.storage.data()));
}

struct FreeAddresses {
  void operator()(addrinfo* list) const noexcept { freeaddrinfo(list); }
};
using AddressList = std::unique_ptr<addrinfo, FreeAddresses>;

LookupResult lookUp(const char* host, const char* service, int flags, AddressList& list) {
  // On Windows the empty name would mean this machine.
  if (*host == '\0') return LookupResult::Failed;
  addrinfo hints{};
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_DGRAM;
  hints.ai_protocol = IPPROTO_UDP;
  hints.ai_flags = flags;
  addrinfo* first = nullptr;
  const int error = getaddrinfo(host, service, &hints, &first);
  list.reset(first);
  if (error == kNoDataError) return LookupResult::NoData;
  return error == 0 && first != nullptr ? LookupResult::Found : LookupResult::Failed;
}

/// An IPv4 address without the leading zeros that systems take for those of octal numbers; any other text as it is.
std::string withoutLeadingZeros(const char* address) {
  std::string text(address);
  if (IPAddress::isValidAddress(address) != StatusSuccess) return text;
  for (std::size_t at = 0; at != std::string::npos; at = text.find('.', at)) {
    if (at != 0) ++at;
    while (text[at] == '0' && at + 1 < text.size() && text[at + 1] != '.') text.erase(at, 1);
  }
  return text;
}

}  // namespace

LookupResult resolve(const char* host, const char* service, std::vector<SocketAddress>& found) {
  AddressList list;
  if (const auto result = lookUp(host, service, 0, list); result != LookupResult::Found) return result;
  for (const addrinfo* entry = list.get(); entry != nullptr; entry = entry->ai_next) {
    found.push_back(toSocketAddress(entry->ai_addr, static_cast<std::size_t>(entry->ai_addrlen)));
  }
  return LookupResult::Found;
}

LookupResult resolveNumeric(const char* address, const char* service, SocketAddress& found) {
  AddressList list;
  const std::string decimal = withoutLeadingZeros(address);
  if (const auto result = lookUp(decimal.c_str(), service, AI_NUMERICHOST, list); result != LookupResult::Found) {
    return result;
  }
  found = toSocketAddress(list->ai_addr, static_cast<std::size_t>(list->ai_addrlen));
  return LookupResult::Found;
}

SocketAddress toSocketAddress(const void* native, std::size_t length) {
  SocketAddress address;
  if (native == nullptr || length > address.storage.size()) return address;
  std::memcpy(address.storage.data(), native, length);
  address.length = static_cast<std::uint32_t>(length);
  const auto family = nativeOf(address)->sa_family;
  address.family = family == AF_INET ? Family::IPv4 : family == AF_INET6 ? Family::IPv6 : Family::Other;
  return address;
}

std::string numericText(const SocketAddress& address) {
  std::array<char, NI_MAXHOST> text{};
  const int error = getnameinfo(nativeOf(address), static_cast<socklen_t>(address.length), text.data(), text.size(),
                                nullptr, 0, NI_NUMERICHOST);
  return error == 0 ? text.data() : std::string();
}

std::string linkLocalText(const SocketAddress& address) {
  sockaddr_in6 native{};
  if (address.family != Family::IPv6 || address.length < sizeof(native)) return {};
  std::memcpy(&native, address.storage.data(), sizeof(native));
  const std::string text = numericText(address);
  if (native.sin6_scope_id == 0 || !text.starts_with("fe80:")) return {};
  // Some systems render the zone as a name; its number is the same for all.
  return text.substr(0, text.find('%')) + '%' + std::to_string(native.sin6_scope_id);
}

void setScope(SocketAddress& address, std::uint32_t scope) {
  sockaddr_in6 native{};
  if (address.family != Family::IPv6 || address.length < sizeof(native)) return;
  std::memcpy(&native, address.storage.data(), sizeof(native));
  native.sin6_scope_id = scope;
  std::memcpy(address.storage.data(), &native, sizeof(native));
}

Socket Socket::open(Family family) {
  const int nativeFamily = family == Family::IPv6 ? AF_INET6 : AF_INET;
  return {static_cast<std::intptr_t>(openNative(nativeFamily)), family};
}

Socket::Socket(Socket&& other) noexcept : handle_(std::exchange(other.handle_, kNone)), family_(other.family_) {}

Socket& Socket::operator=(Socket&& other) noexcept {
  std::swap(handle_, other.handle_);
  std::swap(family_, other.family_);
  return *this;
}

Socket::~Socket() {
  if (isValid()) closeNative(nativeOf(handle_));
}

bool Socket::setNonBlocking() { return makeNonBlocking(nativeOf(handle_)); }

bool Socket::setBroadcast(bool on) {
  const int value = on ? 1 : 0;
  const char* bytes = static_cast<const char*>(static_cast<const void*>(&value));
  return ::setsockopt(nativeOf(handle_), SOL_SOCKET, SO_BROADCAST, bytes, sizeof(value)) == 0;
}

bool Socket::bind(const SocketAddress& address) {
  return ::bind(nativeOf(handle_), nativeOf(address), static_cast<socklen_t>(address.length)) == 0;
}

bool Socket::sendTo(std::span<const std::uint8_t> data, const SocketAddress& address) {
  const char* bytes = static_cast<const char*>(static_cast<const void*>(data.data()));
  const auto sent = ::sendto(nativeOf(handle_), bytes, static_cast<NativeSize>(data.size()), 0, nativeOf(address),
                             static_cast<socklen_t>(address.length));
  return sent >= 0;
}

bool Socket::receiveFrom(std::span<std::uint8_t> buffer, std::size_t& received, SocketAddress& sender) {
  sockaddr_storage from{};
  socklen_t fromLength = sizeof(from);
  char* bytes = static_cast<char*>(static_cast<void*>(buffer.data()));
  const auto length = ::recvfrom(nativeOf(handle_), bytes, static_cast<NativeSize>(buffer.size()), kReceiveFlags,
                                 static_cast<sockaddr*>(static_cast<void*>(&from)), &fromLength);
  if (length < 0 || std::cmp_greater(length, buffer.size())) return false;
  received = static_cast<std::size_t>(length);
  sender = toSocketAddress(&from, static_cast<std::size_t>(fromLength));
  return true;
}

}  // namespace ztsnmp
