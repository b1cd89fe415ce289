#pragma once

#include <cstdint>
#include <span>

#include "CommInterface.h"
#include "ztsnmp/ReqRespPDU.h"
#include "ztsnmp/Target.h"

namespace ztsnmp {

/// exchange sends a request over one transport, to each valid address of the target in its order, until an answer can
/// be read into the PDU. It answers whether one could.
[[nodiscard]] bool exchange(CommInterface& transport, Target& target, std::span<const std::uint8_t> request,
                            ReqRespPDU& pdu);

}  // namespace ztsnmp
