#pragma once

namespace ztsnmp {

/// textOf answers the text of a status, as `SNMPManager::errorToString` tells.
[[nodiscard]] const char* textOf(int status) noexcept;

}  // namespace ztsnmp
