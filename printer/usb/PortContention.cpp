#include "PortContention.h"

#include <utility>

#include "Trace.h"

namespace zt {
namespace {

constexpr std::uint8_t kPort = 0x99;
constexpr int kReleaseAttempts = 101;
constexpr std::uint32_t kReleasePause = 500;

}  // namespace

PortContention::PortContention(DeviceMonitor monitor, Pause pause)
    : monitor_(std::move(monitor)), pause_(std::move(pause)) {}

PortContention::~PortContention() { PortContention::Unlock(); }

void PortContention::Unlock() {
  // A port that was refused is somebody else's and not released.
  if (!std::exchange(locked_, false)) return;
  for (int attempt = 1; !monitor_.release(kPort) && attempt < kReleaseAttempts; ++attempt) pause_(kReleasePause);
}

bool PortContention::Lock() {
  if (locked_) {
    ZT_TRACE(Information, "Already Locked!");
    return true;
  }
  locked_ = monitor_.acquire(kPort);
  if (!locked_) ZT_TRACE(Information, "Failed to acquire device mon!!!");
  return locked_;
}

}  // namespace zt
