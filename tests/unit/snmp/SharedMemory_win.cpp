#include "SharedMemory.h"

#include <windows.h>

SharedMemory::SharedMemory(const char* name, std::size_t size)
    : handle_(reinterpret_cast<std::intptr_t>(
          CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, static_cast<DWORD>(size), name))) {}

SharedMemory::~SharedMemory() { CloseHandle(reinterpret_cast<HANDLE>(handle_)); }
