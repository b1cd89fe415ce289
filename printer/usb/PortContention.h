#pragma once

#include "Clock.h"
#include "DeviceMonitor.h"

namespace zt {

// PortContention holds the port against the printing system, from Lock until Unlock or its end. The order of its
// virtual operations is part of the interface.
class PortContention {
 public:
  PortContention(DeviceMonitor monitor, Pause pause);
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
  Pause pause_;
};

}  // namespace zt
