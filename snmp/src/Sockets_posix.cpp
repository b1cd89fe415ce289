#include "Sockets.h"

#include <fcntl.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <utility>

#include "SystemSockets.h"
#include "ztsnmp/SNMPManager.h"

int SNMPStartup() noexcept { return 0; }  // Sockets need no start here.
void SNMPCleanup() noexcept {}

namespace ztsnmp {

namespace {

struct FreeInterfaces {
  void operator()(ifaddrs* list) const noexcept { freeifaddrs(list); }
};
using InterfaceList = std::unique_ptr<ifaddrs, FreeInterfaces>;

InterfaceList listInterfaces() {
  ifaddrs* first = nullptr;
  return InterfaceList(getifaddrs(&first) == 0 ? first : nullptr);
}

/// The address of an interface that is up; of the family Other when there is none of IP.
SocketAddress addressOf(const ifaddrs& interface) {
  if (interface.ifa_addr == nullptr || (interface.ifa_flags & IFF_UP) == 0) return {};
  switch (interface.ifa_addr->sa_family) {
    case AF_INET:
      return toSocketAddress(interface.ifa_addr, sizeof(sockaddr_in));
    case AF_INET6:
      return toSocketAddress(interface.ifa_addr, sizeof(sockaddr_in6));
    default:
      return {};
  }
}

}  // namespace

NativeSocket openNative(int family) { return ::socket(family, SOCK_DGRAM | SOCK_CLOEXEC, IPPROTO_UDP); }

bool makeNonBlocking(NativeSocket handle) {
  int on = 1;
  return ::ioctl(handle, FIONBIO, &on) == 0;
}

void closeNative(NativeSocket handle) { ::close(handle); }

// The interfaces are asked, not the resolver: the usual entry of one's own name in /etc/hosts is 127.0.1.1, and a
// socket bound to that reaches nobody else.
LookupResult localAddresses(std::vector<SocketAddress>& found) {
  const auto list = listInterfaces();
  if (!list) return LookupResult::Failed;
  for (const ifaddrs* entry = list.get(); entry != nullptr; entry = entry->ifa_next) {
    if (const auto address = addressOf(*entry); address.family != Family::Other) found.push_back(address);
  }
  return found.empty() ? LookupResult::NoData : LookupResult::Found;
}

std::vector<std::string> linkLocalAddresses() {
  std::vector<std::string> texts;
  const auto list = listInterfaces();
  for (const ifaddrs* entry = list.get(); entry != nullptr; entry = entry->ifa_next) {
    std::string text = linkLocalText(addressOf(*entry));
    if (!text.empty()) texts.push_back(std::move(text));
  }
  return texts;
}

WaitResult waitForSockets(std::span<const Socket> sockets, WaitFor what, std::chrono::milliseconds timeout,
                          ReadySet& ready) {
  using Clock = std::chrono::steady_clock;
  const short wanted = what == WaitFor::Readable ? POLLIN : POLLOUT;
  std::array<pollfd, kMaxSockets> entries;
  for (std::size_t i = 0; i < sockets.size(); ++i) {
    entries[i] = {static_cast<int>(sockets[i].handle()), wanted, 0};
  }
  const auto end = Clock::now() + timeout;
  int count = 0;
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
    count = ::poll(entries.data(), sockets.size(), static_cast<int>(std::max(left, {}).count()));
    if (count >= 0 || errno != EINTR) break;  // A signal is no reason to stop waiting.
  }
  if (count < 0) return WaitResult::Failed;
  if (count == 0) return WaitResult::Expired;
  ready.reset();
  for (std::size_t i = 0; i < sockets.size(); ++i) ready[i] = entries[i].revents != 0;
  return WaitResult::Ready;
}

bool isMappingPresent(const char* name, std::size_t size) {
  const int handle = ::shm_open((std::string("/") + name).c_str(), O_RDONLY, 0);
  if (handle < 0) return false;
  void* const view = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, handle, 0);
  ::close(handle);
  if (view == MAP_FAILED) return false;
  ::munmap(view, size);
  return true;
}

}  // namespace ztsnmp
