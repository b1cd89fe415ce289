#include "USBDevice.h"

#include <windows.h>

#include <utility>

#include "Handle.h"
#include "Trace.h"

namespace zt {
namespace {

// Control codes of the USB printing class driver.
constexpr DWORD kVendorGetCommand = 0x0022003C;  // IOCTL_USBPRINT_VENDOR_GET_COMMAND
constexpr DWORD kQueryDeviceID = 0x0016000C;     // IOCTL_PAR_QUERY_DEVICE_ID

constexpr DWORD kBulkTimeout = 5000;
constexpr DWORD kCancelPause = 2000;

class DeviceControl : public USBControl {
 public:
  explicit DeviceControl(FileHandle device) : device_(std::move(device)) {}

  std::optional<std::size_t> Request(const USBRequest& request, std::span<std::uint8_t> reply) override {
    USBRequest input = request;
    DWORD filled = 0;
    if (!DeviceIoControl(device_.Get(), kVendorGetCommand, input.bytes.data(), static_cast<DWORD>(input.bytes.size()),
                         reply.data(), static_cast<DWORD>(reply.size()), &filled, nullptr)) {
      const DWORD error = GetLastError();
      WriteDebug((TextBuilder() << "[USB EP0 IO Module] DeviceIoControl error " << error << "\n").Take());
      return std::nullopt;
    }
    return filled;
  }

  std::optional<std::size_t> QueryDeviceID(std::span<std::uint8_t> reply) override {
    DWORD filled = 0;
    if (!DeviceIoControl(device_.Get(), kQueryDeviceID, nullptr, 0, reply.data(), static_cast<DWORD>(reply.size()),
                         &filled, nullptr)) {
      return std::nullopt;
    }
    return filled;
  }

 private:
  FileHandle device_;
};

class OverlappedBulkIO : public USBBulkIO {
 public:
  explicit OverlappedBulkIO(FileHandle device) : device_(std::move(device)) {}

 private:
  bool Write(std::span<const std::uint8_t> bytes) override {
    return Transfer(bytes.size(), [&](OVERLAPPED& overlapped) {
      return WriteFile(device_.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), nullptr, &overlapped);
    });
  }

  bool Read(std::span<std::uint8_t> bytes) override {
    return Transfer(bytes.size(), [&](OVERLAPPED& overlapped) {
      return ReadFile(device_.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), nullptr, &overlapped);
    });
  }

  // Transfer starts a read or write and waits for its end; true when it moved exactly `size` bytes.
  template <class Start>
  bool Transfer(std::size_t size, Start start) {
    const KernelHandle done(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!done) return false;
    OVERLAPPED overlapped{};
    overlapped.hEvent = done.Get();
    if (!start(overlapped)) {
      // A call that failed at once never signals its event.
      if (GetLastError() != ERROR_IO_PENDING) return false;
      if (WaitForSingleObject(done.Get(), kBulkTimeout) != WAIT_OBJECT_0) {
        ::Sleep(kCancelPause);
        CancelIo(device_.Get());
        // The driver owns the buffer and the event until the cancelled transfer has ended.
        DWORD ignored = 0;
        GetOverlappedResult(device_.Get(), &overlapped, &ignored, TRUE);
        return false;
      }
    }
    DWORD moved = 0;
    return GetOverlappedResult(device_.Get(), &overlapped, &moved, FALSE) && moved == size;
  }

  FileHandle device_;
};

}  // namespace

std::unique_ptr<USBControl> OpenUSBControl(const std::wstring& devicePath) {
  FileHandle device(CreateFileW(devicePath.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!device) return nullptr;
  return std::make_unique<DeviceControl>(std::move(device));
}

std::unique_ptr<USBBulkIO> OpenUSBBulkIO(const std::wstring& devicePath) {
  FileHandle device(CreateFileW(devicePath.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                FILE_FLAG_OVERLAPPED, nullptr));
  if (!device) return nullptr;
  return std::make_unique<OverlappedBulkIO>(std::move(device));
}

}  // namespace zt
