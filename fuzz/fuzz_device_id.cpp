// Device IDs, plain and extended, in a code page with double-byte characters. The first byte cuts the input in two.

#include <algorithm>
#include <string>

#include "ModelFamily.h"
#include "PrinterDeviceID.h"
#include "Require.h"

namespace {

bool isLeadByte(unsigned char byte) { return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC); }

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::uint8_t* const cut = data + 1 + std::min<std::size_t>(data[0], size - 1);
  const std::string plain(data + 1, cut);
  const std::string extended(cut, data + size);

  zt::PrinterDeviceID id;
  zt::ParseDeviceID(plain, id, isLeadByte);
  require(id.raw == plain, "the device ID is kept");
  for (const std::string* field : {&id.model, &id.commandSet, &id.manufacturer, &id.classInfo, &id.deviceClass}) {
    require(contains(plain, *field), "a field is a part of the device ID");
  }

  const zt::PrinterDeviceID before = id;
  zt::MergeExtendedDeviceID(extended, id, isLeadByte);
  require(id.model == before.model && id.manufacturer == before.manufacturer && id.raw == before.raw,
          "an extended device ID changes no identity");
  require(id.commandSet.starts_with(before.commandSet), "an extended device ID only adds commands");

  require(zt::SBXStateOf(id) <= zt::ProtectionState::OT, "there are three protection states");
  if (const auto index = zt::FindCountryIndex(id)) {
    require(contains(id.commandSet, "CI_" + *index), "a country index stands in the command set");
  }
  const zt::ModelFamily family = zt::ClassifyModelFamily(id.model);
  require(zt::ModelFamilyName(family).empty() == (family == zt::ModelFamily::Unknown), "a known family has a name");
  if (zt::HasCommand(id, "ZOLT")) require(contains(id.commandSet, "ZOLT"), "a command stands in the command set");
  return 0;
}
