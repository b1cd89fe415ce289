#pragma once

#include <cstddef>
#include <functional>
#include <span>

#include "ztsnmp/SNMPManager.h"

namespace ztsnmp {

using AnswerHandler = std::function<void(ReqRespPDU& answer, NetworkAddress* sender)>;
using StatusHandler = std::function<void(EnumDetectionStatType status)>;

/// kDefaultSeconds is how long to wait for one more answer when nobody says.
constexpr int kDefaultSeconds = 3;

/// askEveryone broadcasts the request and hands over each good answer, as `SNMPManager::broadcast` tells. The handlers
/// are there.
[[nodiscard]] int askEveryone(ReqRespPDU& pdu, EnumPDUType type, const char* community, int seconds,
                              const AnswerHandler& onAnswer, const StatusHandler& onStatus);

/// findHPPrinters fills the room with printers, as `SNMPManager::detectHPPrinters` tells; `found` stays on failure.
[[nodiscard]] int findHPPrinters(std::span<IPAddress> room, std::size_t& found);

}  // namespace ztsnmp
