#pragma once

#include <winsock2.h>
#include <ws2tcpip.h>

namespace ztsnmp {

using NativeSocket = SOCKET;
using NativeSize = int;

constexpr int kNoDataError = WSANO_DATA;

/// A datagram that is too long makes the read fail by itself.
constexpr int kReceiveFlags = 0;

/// openNative answers a UDP socket that programs which this process starts do not inherit; INVALID_SOCKET when there is
/// none.
[[nodiscard]] NativeSocket openNative(int family);
[[nodiscard]] bool makeNonBlocking(NativeSocket handle);
void closeNative(NativeSocket handle);

}  // namespace ztsnmp
