#pragma once

#include "BerReader.h"
#include "BerWriter.h"
#include "ztsnmp/OID.h"

namespace ztsnmp {

/// OIDCodec makes the encoding of an OBJECT IDENTIFIER from the dotted text of an `OID`, and back.
///
/// Names are written and read far more often than they change, so an `OID` keeps the encoding beside its text, as long
/// as each can be made from the other. A text that is written in another way than it would be read ("01.3", "2.40", "")
/// has none to keep, nor has a very long one; they are encoded when they go out.
class OIDCodec {
 public:
  /// kTag is the tag of an OBJECT IDENTIFIER.
  static constexpr std::uint8_t kTag = 0x06;

  /// write writes the whole element. false, with nothing written, when one of the numbers has no encoding.
  [[nodiscard]] static bool write(BerWriter& writer, const OID& oid) noexcept;

  /// read reads the content of the element. false, with the old text kept, when it is malformed or too long.
  [[nodiscard]] static bool read(BerReader content, OID& oid);

  /// encodingOf answers the encoding to be kept for a text that keeps the rule of `OID`; empty when there is none.
  [[nodiscard]] static OID::KeptEncoding encodingOf(const char* dotted) noexcept;

 private:
  [[nodiscard]] static OID::KeptEncoding keep(std::span<const std::uint8_t> bytes) noexcept;
  [[nodiscard]] static std::span<const std::uint8_t> keptIn(const OID& oid) noexcept;
};

}  // namespace ztsnmp
