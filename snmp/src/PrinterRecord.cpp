#include "PrinterRecord.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

#include "BerReader.h"
#include "HexText.h"

namespace ztsnmp {

namespace {

constexpr std::uint8_t kGeneralResponse = 2;
constexpr std::uint8_t kNearestResponse = 4;

/// Print server, network print device.
constexpr unsigned kPrinterServices[] = {0x0007, 0x030C};

constexpr std::size_t kNameLength = 48;
constexpr std::size_t kAddressLength = 10;  // network 4, node 6
constexpr std::size_t kTrailerLength = 4;   // socket 2, hops 2

constexpr std::string_view kSysName = "1.3.6.1.2.1.1.5.0";
constexpr std::string_view kDeviceDescription = "1.3.6.1.2.1.25.3.2.1.3.1";
constexpr std::string_view kPrinterStatus = "1.3.6.1.2.1.25.3.5.1.1.1";

unsigned toNumber(std::span<const std::uint8_t> twoBytes) { return twoBytes[0] * 256U + twoBytes[1]; }

}  // namespace

int PrinterRecord::decodeSAPPacket(std::span<const std::uint8_t> packet, Printer& printer) noexcept try {
  // The advertisement is no BER, but its bytes are taken with the same care.
  BerReader reader(packet);
  const auto operation = reader.take(2);
  if (!operation) return StatusGeneralError;
  if (const unsigned number = toNumber(*operation); number != kGeneralResponse && number != kNearestResponse) {
    return StatusGeneralError;
  }
  for (;;) {
    const auto service = reader.take(2);
    const auto name = reader.take(kNameLength);
    const auto address = reader.take(kAddressLength);
    if (!service || !name || !address || !reader.take(kTrailerLength)) return StatusGeneralError;
    if (std::find(std::begin(kPrinterServices), std::end(kPrinterServices), toNumber(*service)) ==
        std::end(kPrinterServices))
      continue;

    const auto end = std::find(name->begin(), name->end(), std::uint8_t{0});
    OctetString decoded;
    const auto nameLength = static_cast<std::uint64_t>(end - name->begin());
    if (decoded.setValue(name->data(), nameLength) != StatusSuccess ||
        printer.setIPXAddress(IPXAddress(HtoA(*address).c_str())) != StatusSuccess) {
      return StatusGeneralError;
    }
    printer.name_ = std::move(decoded);
    return StatusSuccess;
  }
} catch (const std::bad_alloc&) {
  return StatusGeneralError;
}

int PrinterRecord::makePrinterObject(const ReqRespPDU& answer, Printer& printer) noexcept try {
  OctetString sysName = printer.name_;
  OctetString description = printer.description_;
  Integer status = printer.status_;
  bool filled = false;
  for (int i = 0; i < answer.getVarBindCount(); ++i) {
    const VarBind& binding = answer.getVarBind(static_cast<unsigned>(i));
    const std::string_view name = binding.getOID().getValue();
    const SNMPDataType& value = binding.getValue();
    if (name == kSysName && value.getDataType() == DataTypeOctetString) {
      sysName = static_cast<const OctetString&>(value);
    } else if (name == kDeviceDescription && value.getDataType() == DataTypeOctetString) {
      description = static_cast<const OctetString&>(value);
    } else if (name == kPrinterStatus && value.getDataType() == DataTypeInteger) {
      status = static_cast<const Integer&>(value);
    } else {
      continue;
    }
    filled = true;
  }
  // Nothing from here on can fail.
  printer.name_ = std::move(sysName);
  printer.description_ = std::move(description);
  printer.status_ = status;
  return filled ? StatusSuccess : StatusGeneralError;
} catch (const std::bad_alloc&) {
  return StatusGeneralError;
}

}  // namespace ztsnmp
