#include <winsock2.h>
// winsock2.h must come first.
#include <windows.h>

#include <cstdint>

#include "HandleCount.h"

namespace {

bool oldSystem = false;

SOCKET WSAAPI openSocket(int family, int type, int protocol, WSAPROTOCOL_INFOW* info, GROUP group, DWORD flags) {
  if (oldSystem && (flags & WSA_FLAG_NO_HANDLE_INHERIT) != 0) {
    WSASetLastError(WSAEINVAL);
    return INVALID_SOCKET;
  }
  static const FARPROC open = GetProcAddress(GetModuleHandleW(L"ws2_32.dll"), "WSASocketW");
  return reinterpret_cast<decltype(&openSocket)>(reinterpret_cast<void*>(open))(family, type, protocol, info, group,
                                                                                flags);
}

}  // namespace

// Stands in for the entry of the import table that the linker would make.
extern "C" {
decltype(&openSocket) __imp_WSASocketW = openSocket;
}

void playOldSystem(bool on) { oldSystem = on; }

unsigned long handleCount() {
  DWORD count = 0;
  GetProcessHandleCount(GetCurrentProcess(), &count);
  if (count != 0) return count;
  // Wine does not count. There, a new handle gets the lowest free number.
  const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  CloseHandle(event);
  return static_cast<unsigned long>(reinterpret_cast<std::uintptr_t>(event));
}

bool isInherited(std::intptr_t handle) {
  DWORD flags = HANDLE_FLAG_INHERIT;
  GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags);
  return (flags & HANDLE_FLAG_INHERIT) != 0;
}
