#include "CommIterator.h"

#include "IPInterface.h"

namespace ztsnmp {

CommInterface* CommIterator::next() {
  if (transport_) return nullptr;
  transport_ = std::make_unique<IPInterface>();
  return transport_.get();
}

}  // namespace ztsnmp
