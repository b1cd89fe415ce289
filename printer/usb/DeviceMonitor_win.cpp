#include "DeviceMonitor.h"

#include <windows.h>

#include <memory>

#include "Handle.h"

namespace zt {
namespace {

using PortFunction = int(__cdecl*)(unsigned char port);

PortFunction FindFunction(const LibraryHandle& library, const char* name) {
  return reinterpret_cast<PortFunction>(reinterpret_cast<void*>(GetProcAddress(library.Get(), name)));
}

}  // namespace

std::optional<DeviceMonitor> LoadDeviceMonitor() {
  // Never from the current folder or the search path: anybody may write there.
  const auto library = std::make_shared<LibraryHandle>(
      LoadLibraryExW(L"klpmon.dll", nullptr, LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32));
  if (!*library) return std::nullopt;
  const PortFunction acquire = FindFunction(*library, "PortAcquire");
  const PortFunction release = FindFunction(*library, "PortRelease");
  if (!acquire || !release) return std::nullopt;
  return DeviceMonitor{[library, acquire](std::uint8_t port) { return acquire(port) != 0; },
                       [library, release](std::uint8_t port) { return release(port) != 0; }};
}

}  // namespace zt
