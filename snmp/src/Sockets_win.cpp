#include <winsock2.h>
// winsock2.h must come first.
#include <windows.h>
#include <iphlpapi.h>
#include <ws2tcpip.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "Sockets.h"
#include "SystemSockets.h"
#include "ztsnmp/SNMPManager.h"

int SNMPStartup() noexcept {
  WSADATA data{};
  const int error = WSAStartup(MAKEWORD(2, 2), &data);
  if (error != 0) {
    constexpr std::string_view kFailed = "SNMP_WSAStartup(MAKEWORD(2,2)) failed, Error=";
    std::array<char, kFailed.size() + 16> text{};
    char* const number = std::copy(kFailed.begin(), kFailed.end(), text.data());
    *std::to_chars(number, number + 11, error).ptr = '\n';
    OutputDebugStringA(text.data());
  }
  return error;
}

void SNMPCleanup() noexcept { WSACleanup(); }

namespace ztsnmp {

namespace {

using GetAdaptersAddressesFunction = decltype(&GetAdaptersAddresses);

/// Loads a library, and those that it needs, from the system folder and no other. By its path, since a Windows 7
/// without KB2533623 does not know the flag that says so.
HMODULE loadSystemLibrary(const wchar_t* name) {
  std::array<wchar_t, MAX_PATH> folder{};
  const UINT length = GetSystemDirectoryW(folder.data(), MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return nullptr;
  const std::wstring path = std::wstring(folder.data(), length) + L'\\' + name;
  return LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

/// Looked up once. The library is not linked, since most runs never meet a link-local address and are spared loading
/// it.
GetAdaptersAddressesFunction findGetAdaptersAddresses() {
  static const GetAdaptersAddressesFunction function = [] {
    const HMODULE library = loadSystemLibrary(L"Iphlpapi.dll");
    const FARPROC address = library != nullptr ? GetProcAddress(library, "GetAdaptersAddresses") : nullptr;
    // By way of void*: compilers warn of a direct cast between function types.
    return reinterpret_cast<GetAdaptersAddressesFunction>(reinterpret_cast<void*>(address));
  }();
  return function;
}

struct CloseHandleOf {
  void operator()(void* handle) const noexcept { CloseHandle(handle); }
};

}  // namespace

NativeSocket openNative(int family) {
  constexpr DWORD kFlags = WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT;
  NativeSocket handle = WSASocketW(family, SOCK_DGRAM, IPPROTO_UDP, nullptr, 0, kFlags);
  if (handle != INVALID_SOCKET) return handle;
  // A Windows 7 without its first service pack does not know the flag.
  handle = WSASocketW(family, SOCK_DGRAM, IPPROTO_UDP, nullptr, 0, WSA_FLAG_OVERLAPPED);
  if (handle != INVALID_SOCKET) SetHandleInformation(reinterpret_cast<HANDLE>(handle), HANDLE_FLAG_INHERIT, 0);
  return handle;
}

bool makeNonBlocking(NativeSocket handle) {
  u_long on = 1;
  return ioctlsocket(handle, static_cast<long>(FIONBIO), &on) == 0;
}

void closeNative(NativeSocket handle) { closesocket(handle); }

LookupResult localAddresses(std::vector<SocketAddress>& found) {
  std::array<char, NI_MAXHOST> name{};
  if (gethostname(name.data(), static_cast<int>(name.size())) != 0) return LookupResult::NoData;
  return resolve(name.data(), nullptr, found);
}

std::vector<std::string> linkLocalAddresses() {
  std::vector<std::string> texts;
  const auto getAdaptersAddresses = findGetAdaptersAddresses();
  if (getAdaptersAddresses == nullptr) return texts;
  ULONG size = 0;
  if (getAdaptersAddresses(AF_INET6, GAA_FLAG_INCLUDE_PREFIX, nullptr, nullptr, &size) != ERROR_BUFFER_OVERFLOW) {
    return texts;
  }
  // Of 8-byte words, so that the records in it are aligned.
  std::vector<std::uint64_t> buffer(size / sizeof(std::uint64_t) + 1);
  auto* const adapters = static_cast<IP_ADAPTER_ADDRESSES*>(static_cast<void*>(buffer.data()));
  if (getAdaptersAddresses(AF_INET6, GAA_FLAG_INCLUDE_PREFIX, nullptr, adapters, &size) != ERROR_SUCCESS) return texts;
  for (const auto* adapter = adapters; adapter != nullptr; adapter = adapter->Next) {
    for (const auto* unicast = adapter->FirstUnicastAddress; unicast != nullptr; unicast = unicast->Next) {
      const auto& native = unicast->Address;
      std::string text =
          linkLocalText(toSocketAddress(native.lpSockaddr, static_cast<std::size_t>(native.iSockaddrLength)));
      if (!text.empty()) texts.push_back(std::move(text));
    }
  }
  return texts;
}

WaitResult waitForSockets(std::span<const Socket> sockets, WaitFor what, std::chrono::milliseconds timeout,
                          ReadySet& ready) {
  static_assert(kMaxSockets <= FD_SETSIZE);
  fd_set set;
  FD_ZERO(&set);
  for (const Socket& socket : sockets) FD_SET(static_cast<SOCKET>(socket.handle()), &set);
  timeval limit{static_cast<long>(timeout.count() / 1000), static_cast<long>(timeout.count() % 1000 * 1000)};
  const bool readable = what == WaitFor::Readable;
  const int count = select(0, readable ? &set : nullptr, readable ? nullptr : &set, nullptr, &limit);
  if (count < 0) return WaitResult::Failed;
  if (count == 0) return WaitResult::Expired;
  for (std::size_t i = 0; i < sockets.size(); ++i) {
    ready[i] = FD_ISSET(static_cast<SOCKET>(sockets[i].handle()), &set) != 0;
  }
  return WaitResult::Ready;
}

bool isMappingPresent(const char* name, std::size_t size) {
  const std::unique_ptr<void, CloseHandleOf> mapping(OpenFileMappingA(FILE_MAP_READ, FALSE, name));
  if (!mapping) return false;
  const void* const view = MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, size);
  if (view == nullptr) return false;
  UnmapViewOfFile(view);
  return true;
}

}  // namespace ztsnmp
