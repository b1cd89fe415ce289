#pragma once

#include "ztsnmp/SNMPManager.h"

/// BCastOptions is what a broadcast needs besides the PDU.
struct BCastOptions {
  const char* community;  ///< null for "public"
  int seconds;            ///< how long to wait for one more answer
  SNMPManager::AnswerCallback onAnswer;
  SNMPManager::StatusCallback onStatus;  ///< may be null
};
