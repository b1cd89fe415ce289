#pragma once

#include <string>

#include "Handle.h"

namespace zt {

// ProtectionGuard keeps two product-protection runs off the same queue: while it lives, a file mapping named after the
// queue exists.
class ProtectionGuard {
 public:
  explicit ProtectionGuard(const std::wstring& queueName);

  // HeldByAnother reports whether another process is at work on this queue. A guard that could not be made counts as
  // free.
  bool HeldByAnother() const { return heldByAnother_; }

  // IsHeld reports whether any process is at work on the queue, and takes no guard.
  static bool IsHeld(const std::wstring& queueName);

 private:
  KernelHandle mapping_;
  bool heldByAnother_ = false;
};

}  // namespace zt
