#include "HandleCount.h"

#include <windows.h>

#include <cstdint>

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
