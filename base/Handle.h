#pragma once

#include <windows.h>

#include <utility>

namespace zt {

// Handle owns one handle of the family that Traits describe and closes it on destruction. Closing preserves the
// thread's last-error code, so that it can still be read on the way out.
//
// Traits: `using Type`, `static Type Invalid()`, `static void Close(Type)`.
template <class Traits>
class Handle {
 public:
  using Type = typename Traits::Type;

  Handle() = default;
  explicit Handle(Type handle) : handle_(handle) {}
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, Traits::Invalid())) {}
  Handle& operator=(Handle&& other) noexcept {
    if (this != &other) {
      Reset();
      handle_ = std::exchange(other.handle_, Traits::Invalid());
    }
    return *this;
  }
  ~Handle() { Reset(); }

  explicit operator bool() const { return handle_ != Traits::Invalid(); }
  Type Get() const { return handle_; }

  // Reset closes what is held.
  void Reset() {
    if (handle_ == Traits::Invalid()) return;
    const DWORD error = GetLastError();
    Traits::Close(std::exchange(handle_, Traits::Invalid()));
    SetLastError(error);
  }

  // Receive closes what is held and returns where an opening call may store a new handle.
  Type* Receive() {
    Reset();
    return &handle_;
  }

 private:
  Type handle_ = Traits::Invalid();
};

struct FileHandleTraits {
  using Type = HANDLE;
  static Type Invalid() { return INVALID_HANDLE_VALUE; }
  static void Close(Type handle) { CloseHandle(handle); }
};
using FileHandle = Handle<FileHandleTraits>;  // of CreateFileW

struct KernelHandleTraits {
  using Type = HANDLE;
  static Type Invalid() { return nullptr; }
  static void Close(Type handle) { CloseHandle(handle); }
};
using KernelHandle = Handle<KernelHandleTraits>;  // mutexes, events, file mappings

struct RegistryHandleTraits {
  using Type = HKEY;
  static Type Invalid() { return nullptr; }
  static void Close(Type key) { RegCloseKey(key); }
};
using RegistryHandle = Handle<RegistryHandleTraits>;

struct LibraryHandleTraits {
  using Type = HMODULE;
  static Type Invalid() { return nullptr; }
  static void Close(Type library) { FreeLibrary(library); }
};
using LibraryHandle = Handle<LibraryHandleTraits>;

// LocalFreeDeleter is the deleter of what Windows allocates for its caller with LocalAlloc.
struct LocalFreeDeleter {
  void operator()(void* memory) const { LocalFree(memory); }
};

}  // namespace zt
