#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ModelFamily.h"
#include "SupplyEntry.h"

namespace zt {

// The maker's protocol on the two roads to a USB printer: vendor requests on endpoint 0 (USB Printer Class 1.1 leaves
// them to the maker), and headers of 16 bytes on the bulk pipes. What is multi-byte is big-endian.

// USBRequest is a vendor request and the most bytes that its reply has.
struct USBRequest {
  std::array<std::uint8_t, 3> bytes;
  std::size_t replySize;
};

inline constexpr USBRequest kUSBStatus{{0x02, 0x00, 0x00}, 8};
inline constexpr USBRequest kUSBCounters{{0x43, 0x00, 0x00}, 255};  // the reply has exactly this size
inline constexpr USBRequest kUSBProtectionOn{{0x43, 0x01, 0x00}, 8};
inline constexpr USBRequest kUSBProtectionOff{{0x43, 0x02, 0x00}, 8};
inline constexpr USBRequest kUSBSerialNumber{{0x49, 0x00, 0x01}, 255};
inline constexpr USBRequest kUSBFirmwareVersion{{0x56, 0x00, 0x00}, 255};
inline constexpr USBRequest kUSBWake{{0x99, 0x00, 0x00}, 255};
inline constexpr USBRequest kUSBExtendedDeviceID{{0xE0, 0x01, 0x00}, 255};

using USBStatus = std::array<std::uint8_t, 8>;

// IsAsleep reports whether the status is that of a printer that has to be woken.
bool IsAsleep(const USBStatus& status);

// SuppliesOfStatus reads the toner levels of the status block: one toner or, of the families PHT and PHZ, four.
std::vector<SupplyEntry> SuppliesOfStatus(const USBStatus& status, ModelFamily family);

struct USBPageCounters {
  std::uint32_t largest;  // of the four counters of the block
  std::uint32_t total;
  bool operator==(const USBPageCounters&) const = default;
};

// ReadCounterBlock takes the counters off the front of the counter block; nothing when it is shorter than they are.
std::optional<USBPageCounters> ReadCounterBlock(std::span<const std::uint8_t> block);

// ReadFirmwareVersion finds the version in the firmware text.
std::string ReadFirmwareVersion(std::string_view text);

// TextOfReply returns the bytes of a reply as text, up to the first NUL.
std::string TextOfReply(std::span<const std::uint8_t> reply);

using USBHeader = std::array<std::uint8_t, 16>;

inline constexpr USBHeader kUSBDocumentRequest = {0x1B, 0x91, 0, 0, 0, 0, 0, 6, 0, 0, 0, 1, 0, 0, 0, 0};
inline constexpr USBHeader kUSBDocumentFetch = {0x1B, 0x91, 0, 0, 0, 0, 0, 6, 0, 0, 0, 2, 0, 0, 0, 0};

// DocumentLength returns the size in bytes that the reply to kUSBDocumentRequest announces.
std::uint32_t DocumentLength(const USBHeader& reply);

}  // namespace zt
