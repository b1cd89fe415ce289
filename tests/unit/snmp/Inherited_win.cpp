#include "Inherited.h"

#include <winsock2.h>
// winsock2.h must come first.
#include <windows.h>

// Plays a Windows 7 that does not know the flag against inheritance; the library's import leads here.
static SOCKET WSAAPI openSocket(int family, int type, int protocol, WSAPROTOCOL_INFOW*, GROUP, DWORD flags) {
  return (flags & WSA_FLAG_NO_HANDLE_INHERIT) != 0 ? INVALID_SOCKET : socket(family, type, protocol);
}
extern "C" {
decltype(&openSocket) __imp_WSASocketW = openSocket;
}

bool isInherited(std::intptr_t handle) {
  DWORD flags = HANDLE_FLAG_INHERIT;
  GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags);
  return (flags & HANDLE_FLAG_INHERIT) != 0;
}
