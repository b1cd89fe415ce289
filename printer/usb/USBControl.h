#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "USBProtocol.h"

namespace zt {

// USBControl is the control channel (endpoint 0) of an open USB printer. Both operations return how many bytes of
// `reply` the printer filled, and nothing on failure.
class USBControl {
 public:
  virtual ~USBControl() = default;

  // Request sends a vendor request. `reply` is as large as its reply may be.
  virtual std::optional<std::size_t> Request(const USBRequest& request, std::span<std::uint8_t> reply) = 0;

  // QueryDeviceID reads the IEEE 1284 device ID, without the length that goes before it on the wire.
  virtual std::optional<std::size_t> QueryDeviceID(std::span<std::uint8_t> reply) = 0;
};

}  // namespace zt
