#pragma once

#include <string>

#include "IPAddress.h"
#include "Printer.h"
#include "ReqRespPDU.h"
#include "Target.h"
#include "TrapPDU.h"

struct BCastOptions;

/// EnumDetectionStatType tells the status callback of a broadcast how far it is.
enum EnumDetectionStatType : int {
  DetectionStarted = 0,   ///< the request went out to one network at least, answers are awaited
  DetectionAnswered = 1,  ///< an answer was handed to the answer callback
  DetectionFinished = 2,  ///< the waiting time is over
  DetectionFailed = 3,    ///< it went out to none
};

/// EnumProtocol is the set of bits that `getAvailableProtocols` returns.
enum EnumProtocol : unsigned long {
  ProtocolNone = 0,
  ProtocolIP = 1,
  ProtocolIPX = 2,  ///< never set by this version
  ProtocolDLC = 4,  ///< never set by this version
};

/// SNMPStartup starts the sockets layer. Call it once before the first operation. 0 on success, else the sockets
/// layer's own (positive) error number, which the debugger output hears as well.
ZTSNMP_API int SNMPStartup() noexcept;

/// SNMPCleanup releases the sockets layer, once for each successful `SNMPStartup`.
ZTSNMP_API void SNMPCleanup() noexcept;

/// SNMPManager sends requests to agents, SNMPv1 over UDP (RFC 1157), and leaves the answers in the PDU.
///
///   ReqRespPDU pdu;
///   pdu.addVarBind(VarBind(OID("1.3.6.1.2.1.1.1.0")));
///   if (manager.get(pdu, target) == 0) puts(pdu.getVarBind(0).getValue().toString());
///
/// A walk asks for the next object again and again, as long as the names stay below the one that it began with. An
/// agent that has no more says noSuchName (error-status 2):
///
///   const std::string column = "1.3.6.1.2.1.43.11.1.1.6";  // the supplies' descriptions (Printer MIB, RFC 3805)
///   std::set<std::string> seen;
///   ReqRespPDU pdu;
///   pdu.addVarBind(VarBind(OID(column.c_str())));
///   VarBind& row = pdu.getVarBind(0);
///   while (manager.getNext(pdu, target) == 0) {
///     const std::string name = row.getOID().getValue();
///     if (!name.starts_with(column + '.')) break;
///     if (!seen.insert(name).second) break;  // An agent that repeats a name would lead in circles.
///     puts(row.getValue().toString());
///     row.setValue(Null());  // A request must not carry an empty text, which may have been the answer.
///   }
///
/// A manager, its PDUs and targets are used by one thread at a time; different threads use different ones. Each
/// operation opens and closes its own sockets. No operation of a manager throws (its copies may, see `SNMPDataType`),
/// and none writes a log.
class ZTSNMP_API SNMPManager {
 public:
  using AnswerCallback = void (*)(ReqRespPDU& answer, NetworkAddress* sender);
  using StatusCallback = void (*)(EnumDetectionStatType status);
  using TrapCallback = void (*)(TrapPDU& trap);

  SNMPManager() noexcept;
  SNMPManager(const SNMPManager& other);
  SNMPManager& operator=(const SNMPManager& other);
  ~SNMPManager();

  /// get asks for the objects that the PDU names; getNext for the ones that follow them; set changes them.
  ///
  /// 0 when the agent answered without an error; the answer is then in the PDU's bindings. Else: the status of the
  /// first invalid binding (see `ReqRespPDU`), of the target's look-up (`Target::ResolveAddress`) or of the target
  /// (-23), before anything is sent; or -53 when no address gave a good answer. Then the PDU's error-status tells an
  /// agent's error (above 0) from silence or an unreadable answer (-1). A message has 2048 bytes at most: error-status
  /// 0 with -53 says that the request would have been longer and was not sent; a longer answer counts as unreadable.
  ///
  /// Each valid address of the target is tried in its order until one answers well. The request goes out to it once
  /// from each address of this machine that has the same family, since only the answer tells which of them leads there.
  /// An agent that several lead to gets it several times, a `set` too, which may then take effect more than once. The
  /// first datagram that comes back is taken as the answer, whoever sent it: a printer with several addresses may
  /// answer from another one than was asked.
  int get(ReqRespPDU& pdu, Target& target) noexcept;
  int getNext(ReqRespPDU& pdu, Target& target) noexcept;
  int set(ReqRespPDU& pdu, Target& target) noexcept;

  /// errorToString returns the text of a status, for -124 to 124; the sign does not matter. Above 124 it is empty.
  /// A status below -124 must not be passed.
  [[nodiscard]] static const char* errorToString(int status) noexcept;

  /// broadcast sends the request to all hosts of the local networks (IPv4 broadcast and IPv6 all-nodes multicast) and
  /// hands each good answer to `onAnswer`: a PDU with the answer in its bindings, and the sender's address, both valid
  /// during the call only. Callbacks must not throw. `community` null means "public"; `onStatus` may be null. It
  /// returns when no answer has come for `seconds` (1 to 60, default 3), or 10 times that after the request. 0 when the
  /// request went out to one network at least, also without answers; -57, at once, when it went out to none. Before
  /// that: -56 when `onAnswer` is missing; the status of an invalid binding, of the community (-51) or of the seconds
  /// (-19); -10 for a type that is not get or get-next.
  int broadcast(ReqRespPDU& pdu, const char* community, AnswerCallback onAnswer, StatusCallback onStatus) noexcept;
  int broadcast(ReqRespPDU& pdu, const char* community, AnswerCallback onAnswer, StatusCallback onStatus,
                int seconds) noexcept;
  int broadcast(ReqRespPDU& pdu, const char* community, AnswerCallback onAnswer, StatusCallback onStatus,
                EnumPDUType type, int seconds) noexcept;

  /// detectHPPrinters finds the printers of the local networks whose device identifier is 1.3.6.1.4.1.11.2.3.9.1 or
  /// lies below it. `list` has room for `*count` addresses; `*count` becomes the number found, each address once.
  /// 0, -1 for a null argument or a negative count, else as `broadcast`.
  int detectHPPrinters(IPAddress* list, int* count) noexcept;

  /// _register asks the trap service to hand traps to `onTrap`. -85 for a null argument or an empty name. This version
  /// speaks with no service: -86 when none runs, -96 when one does.
  int _register(const char* appName, TrapCallback onTrap) noexcept;

  /// unregister ends a registration: -87, since there is none.
  int unregister() noexcept;

  /// keepAlive needs the trap service as well: -1.
  int keepAlive(ReqRespPDU& pdu, const char* text, unsigned long interval) noexcept;

  /// getAvailableProtocols returns the transports that work on this machine, as bits of EnumProtocol: a transport works
  /// when a probe of a few bytes could be broadcast with it (UDP port 3301).
  [[nodiscard]] unsigned long getAvailableProtocols() noexcept;

 private:
  int operateUnicast(ReqRespPDU& pdu, Target& target, EnumPDUType type) noexcept;
  int operateBroadcast(ReqRespPDU& pdu, BCastOptions* options, EnumPDUType type) noexcept;
  [[nodiscard]] static int isTrapServerRunning() noexcept;

  std::string appName_;
  TrapCallback onTrap_ = nullptr;
  int requestId_ = 0;
  int registered_ = 0;
  [[maybe_unused]] int reserved_ = 0;
};
