#pragma once

#include <cstdint>
#include <functional>

#include "Clock.h"

namespace zt {

// DeviceMonitor is the maker's device-monitor library, which serialises the traffic of a USB port. Both functions take
// the port identifier and answer whether they succeeded.
struct DeviceMonitor {
  std::function<bool(std::uint8_t port)> acquire;
  std::function<bool(std::uint8_t port)> release;
};

// PortContention holds the port against the printing system, from Lock until Unlock or its end. The order of its
// virtual operations is part of the interface.
class PortContention {
 public:
  PortContention(DeviceMonitor monitor, Sleep sleep);
  virtual ~PortContention();
  PortContention(const PortContention&) = delete;
  PortContention& operator=(const PortContention&) = delete;

  // Unlock gives the port back, if it is held. It tries for up to 50 seconds.
  virtual void Unlock();

  virtual bool IsLocked() const { return locked_; }

  // Lock takes the port; true as well when it is held already.
  virtual bool Lock();

 private:
  bool locked_ = false;
  DeviceMonitor monitor_;
  Sleep sleep_;
};

}  // namespace zt
