#pragma once

#include <functional>

#include "ztsnmp/SNMPManager.h"

namespace ztsnmp {

using AnswerHandler = std::function<void(ReqRespPDU& answer, NetworkAddress* sender)>;
using StatusHandler = std::function<void(EnumDetectionStatType status)>;

/// askEveryone broadcasts the request and hands over each good answer, as `SNMPManager::broadcast` tells. The handlers
/// are there.
[[nodiscard]] int askEveryone(ReqRespPDU& pdu, EnumPDUType type, const char* community, int seconds,
                              const AnswerHandler& onAnswer, const StatusHandler& onStatus);

}  // namespace ztsnmp
