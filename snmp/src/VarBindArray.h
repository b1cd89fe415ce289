#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>

#include "ztsnmp/VarBind.h"

namespace ztsnmp {

/// copyVarBinds answers a new array of deep copies; null for none.
[[nodiscard]] inline std::unique_ptr<VarBind[]> copyVarBinds(const VarBind* list, int count) {
  if (count < 1) return nullptr;
  auto copies = std::make_unique<VarBind[]>(static_cast<std::size_t>(count));
  std::copy_n(list, count, copies.get());
  return copies;
}

}  // namespace ztsnmp
