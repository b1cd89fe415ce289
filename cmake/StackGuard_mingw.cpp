// What the compiler's stack protector calls and compares with, in place of libssp's. That one asks Windows'
// cryptography for its number, which loads three libraries at the start of a program that mostly does nothing.

#include <windows.h>

#include <cstdint>

extern "C" {

std::uintptr_t __stack_chk_guard = 0;

// Before all other initialisers, each of which may be guarded. As Visual C++ does it: clock, process, thread, and where
// the stack and the program happen to lie.
[[gnu::constructor(101)]] static void SetStackGuard() {
  LARGE_INTEGER counter;
  QueryPerformanceCounter(&counter);
  FILETIME time;
  GetSystemTimeAsFileTime(&time);
  const std::uintptr_t parts[] = {static_cast<std::uintptr_t>(counter.QuadPart),
                                  (static_cast<std::uintptr_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime,
                                  GetCurrentProcessId(),
                                  GetCurrentThreadId(),
                                  reinterpret_cast<std::uintptr_t>(&counter),
                                  reinterpret_cast<std::uintptr_t>(&SetStackGuard)};
  std::uintptr_t guard = 0;
  for (const std::uintptr_t part : parts) guard = (guard ^ part) * 0x9E3779B97F4A7C15;
  // A zero byte, so that a text that runs over cannot write it.
  __stack_chk_guard = guard << 8;
}

[[noreturn]] void __stack_chk_fail() {
  constexpr UINT kStackBufferOverrun = 0xC0000409;
  // Nothing of the stack is to be trusted any more, not even for an orderly end.
  TerminateProcess(GetCurrentProcess(), kStackBufferOverrun);
  __builtin_unreachable();
}

}  // extern "C"
