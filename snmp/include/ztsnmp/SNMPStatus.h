#pragma once

/// SNMPStatus names the status codes that the library's operations return: 0 for success, a negative number for a
/// failure. `SNMPManager::errorToString` gives the text of every code, also of those that no operation returns today.
enum SNMPStatus : int {
  StatusSuccess = 0,
  StatusGeneralError = -1,  ///< also: out of memory, or a null argument where no narrower code applies
  StatusInvalidInteger = -2,
  StatusInvalidIPAddress = -3,  ///< IPv4 and IPv6
  StatusInvalidIPXAddress = -5,
  StatusInvalidOctetString = -6,
  StatusInvalidOID = -7,
  StatusInvalidPDU = -8,      ///< no bindings
  StatusInvalidVarBind = -9,  ///< a binding that was refused, or an index out of range
  StatusInvalidPDUType = -10,
  StatusInvalidPhysAddress = -11,
  StatusInvalidValueInVarBind = -16,  ///< an address kind that cannot travel in a binding
  StatusInvalidRetryCount = -18,
  StatusInvalidTimeout = -19,
  StatusInvalidTarget = -23,  ///< no valid address, or a missing community
  StatusCreateSocketError = -30,
  StatusIoControlError = -31,
  StatusInitializationError = -32,
  StatusBroadcastInvalidRequest = -36,
  StatusTimeout = -37,  ///< nothing arrived in time
  StatusBroadcastOptionError = -38,
  StatusBroadcastSendError = -39,
  StatusTransmitInvalidRequest = -40,
  StatusTransmitTimeout = -41,
  StatusTransmitOptionError = -42,
  StatusTransmitSendError = -43,
  StatusReceiveInvalidRequest = -44,
  StatusReceiveWaitError = -45,
  StatusReceiveError = -47,
  StatusInvalidTimeTicks = -48,
  StatusInvalidCounter = -49,
  StatusInvalidGauge = -50,
  StatusInvalidCommunity = -51,
  StatusNoAddressInTarget = -52,
  StatusOperationFailed = -53,  ///< get, get-next or set: not encodable, no answer, or an agent's error
  StatusBroadcastInvalidParameters = -56,
  StatusBroadcastError = -57,
  StatusZeroLengthOctetString = -58,
  StatusRegistrationInvalidParameters = -85,
  StatusRegistrationError = -86,
  StatusUnregistrationError = -87,
  StatusRegistrationTimeout = -96,
};
