#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "BerReader.h"
#include "TrapMessage.h"
#include "ztsnmp/ReqRespPDU.h"
#include "ztsnmp/TrapPDU.h"

namespace ztsnmp {

/// MessageCodec turns PDUs into SNMPv1 messages (RFC 1157, section 4; basic encoding rules, X.690) and back. It knows
/// the shapes that agents use and refuses all else with -1. It allocates nothing but the values that the PDU ends up
/// owning.
class MessageCodec {
 public:
  /// kMaxMessage is the longest message, in bytes, that is sent or read.
  static constexpr std::size_t kMaxMessage = 2048;

  /// kMaxCommunity is the longest community, in characters, that is encoded.
  static constexpr std::size_t kMaxCommunity = 48;

  /// setHeader makes the PDU a fresh request: type and request-id as given, no error.
  static void setHeader(ReqRespPDU& pdu, EnumPDUType type, int requestId) noexcept;
  static void setError(ReqRespPDU& pdu, int status, int index) noexcept;

  /// encodePacket writes the message to the front of `out` and answers its length, or -1 when it does not fit or the
  /// community is too long. For a get or get-next all values of the PDU become `Null` first. A binding that cannot be
  /// encoded is left out.
  [[nodiscard]] static int encodePacket(ReqRespPDU& pdu, std::string_view community,
                                        std::span<std::uint8_t> out) noexcept;

  /// decodePacket reads a GetResponse into the bindings that the PDU holds: 0, or -1 when it is malformed, does not
  /// fit the PDU or reports an error. What was read until then stays in the PDU, error-status and error-index too.
  [[nodiscard]] static int decodePacket(std::span<const std::uint8_t> message, ReqRespPDU& pdu) noexcept;

  /// decodeTrapPacket reads a trap: 0, or -1 with the PDU unchanged.
  [[nodiscard]] static int decodeTrapPacket(std::span<const std::uint8_t> message, TrapPDU& trap) noexcept;

  /// decodeTrapPacket reads what the trap service delivers; null is refused as well.
  [[nodiscard]] static int decodeTrapPacket(const _MESSAGE* message, TrapPDU& trap) noexcept;

 private:
  /// readBinding reads the content of one binding; on failure the slot keeps name and value.
  [[nodiscard]] static bool readBinding(BerReader content, VarBind& slot);
};

}  // namespace ztsnmp
