#include "USBDevicePaths.h"

#include <windows.h>
#include <setupapi.h>

#include <cstddef>
#include <cstdint>

#include "Handle.h"
#include "Trace.h"
#include "USBPortName.h"

namespace zt {
namespace {

// GUID_DEVINTERFACE_USBPRINT, the interface class of the USB printing class driver.
constexpr GUID kUSBPrinterClass = {0x28D78FAD, 0x5A12, 0x11D1, {0xAE, 0x5B, 0x00, 0x00, 0xF8, 0x03, 0xA8, 0xC2}};

struct DeviceListTraits {
  using Type = HDEVINFO;
  static Type Invalid() { return INVALID_HANDLE_VALUE; }
  static void Close(Type list) { SetupDiDestroyDeviceInfoList(list); }
};
using DeviceList = Handle<DeviceListTraits>;

// USBPrinterInterfaces walks the device interfaces of the USB printers that are plugged in.
class USBPrinterInterfaces {
 public:
  USBPrinterInterfaces()
      : list_(SetupDiGetClassDevsW(&kUSBPrinterClass, nullptr, nullptr, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE)) {
    if (!list_) WriteDebug("hDevInfo is INVALID_HANDLE_VALUE");
  }

  explicit operator bool() const { return static_cast<bool>(list_); }

  // Next moves on to the next interface, at first to the first; false at the end.
  bool Next() {
    if (!list_) return false;
    interface_ = {};
    interface_.cbSize = sizeof interface_;
    return SetupDiEnumDeviceInterfaces(list_.Get(), nullptr, &kUSBPrinterClass, index_++, &interface_) != FALSE;
  }

  // ReadPortNumber reads the port number of the interface; `keyFailed` is the debug text of an interface whose registry
  // key does not open.
  std::optional<std::uint32_t> ReadPortNumber(std::string_view keyFailed) {
    const HKEY opened = SetupDiOpenDeviceInterfaceRegKey(list_.Get(), &interface_, 0, KEY_READ);
    if (opened == INVALID_HANDLE_VALUE) {
      WriteDebug(keyFailed);
      return std::nullopt;
    }
    const RegistryHandle key(opened);
    DWORD type = 0;
    DWORD number = 0;
    DWORD size = sizeof number;
    const LSTATUS status =
        RegQueryValueExW(key.Get(), L"Port Number", nullptr, &type, reinterpret_cast<BYTE*>(&number), &size);
    if (status != ERROR_SUCCESS || type != REG_DWORD || size != sizeof number) {
      WriteDebug("can't get key (Port Number)");
      return std::nullopt;
    }
    return number;
  }

  std::optional<std::wstring> ReadPath() {
    DWORD size = 0;
    SetupDiGetDeviceInterfaceDetailW(list_.Get(), &interface_, nullptr, 0, &size, nullptr);
    if (size < sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W)) return std::nullopt;
    std::vector<std::byte> buffer(size);
    auto* const detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*>(buffer.data());
    detail->cbSize = sizeof *detail;
    if (!SetupDiGetDeviceInterfaceDetailW(list_.Get(), &interface_, detail, size, nullptr, nullptr))
      return std::nullopt;
    return detail->DevicePath;
  }

 private:
  DeviceList list_;
  DWORD index_ = 0;
  SP_DEVICE_INTERFACE_DATA interface_{};
};

bool Opens(const std::wstring& path) {
  const FileHandle port(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_EXISTING, 0, nullptr));
  if (!port) WriteDebug("hPort is INVALID_HANDLE_VALUE");
  return static_cast<bool>(port);
}

}  // namespace

std::optional<std::wstring> FindUSBDevicePath(std::wstring_view portName) {
  const std::optional<std::uint32_t> wanted = USBPortNumber(portName);
  if (!wanted) return std::nullopt;
  std::optional<std::wstring> found;
  // The walk goes on after a match, on purpose: where printers share a port number, the last one that opens wins.
  for (USBPrinterInterfaces interfaces; interfaces.Next();) {
    if (interfaces.ReadPortNumber("open device interface regkey failed") != wanted) continue;
    std::optional<std::wstring> path = interfaces.ReadPath();
    if (!path) break;
    if (Opens(*path)) found = std::move(path);
  }
  return found;
}

bool EnumerateUSBPrinterPaths(std::vector<std::wstring>& paths) {
  USBPrinterInterfaces interfaces;
  if (!interfaces) return false;
  const std::size_t before = paths.size();
  while (interfaces.Next()) {
    if (!interfaces.ReadPortNumber("SetupDiOpenDeviceInterfaceRegKey failed")) continue;
    if (std::optional<std::wstring> path = interfaces.ReadPath()) paths.push_back(*std::move(path));
  }
  WriteDebug("SetupDiEnumInterfaceDevice failed");
  return paths.size() > before;
}

}  // namespace zt
