#pragma once

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstddef>

namespace ztsnmp {

using NativeSocket = int;
using NativeSize = std::size_t;

constexpr int kNoDataError = EAI_NODATA;

/// MSG_TRUNC makes the true length of a datagram known, so that one that is too long does not pass for a shorter one.
constexpr int kReceiveFlags = MSG_TRUNC;

/// openNative answers a UDP socket that programs which this process starts do not inherit; -1 when there is none.
[[nodiscard]] NativeSocket openNative(int family);
[[nodiscard]] bool makeNonBlocking(NativeSocket handle);
void closeNative(NativeSocket handle);

}  // namespace ztsnmp
