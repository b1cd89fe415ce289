#pragma once

#include <memory>

#include "CommInterface.h"

namespace ztsnmp {

/// CommIterator owns the transports of one operation and yields them in turn. UDP over IP is the only one.
class CommIterator {
 public:
  /// next answers the next transport, made on first use, or null after the last. It belongs to the iterator.
  [[nodiscard]] CommInterface* next();

 private:
  std::unique_ptr<CommInterface> transport_;
};

}  // namespace ztsnmp
