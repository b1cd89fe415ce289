// What a printer replies, over USB or in its tables, and the names by which it is found. Each reader gets the whole
// input, in a buffer of exactly its size.

#include <string>
#include <vector>

#include "LocationUrl.h"
#include "Require.h"
#include "SupplyReading.h"
#include "USBPortName.h"
#include "USBProtocol.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::uint8_t> bytes(data, data + size);
  const std::string text(data, data + size);
  const std::wstring wide(data, data + size);

  require(zt::ReadCounterBlock(bytes).has_value() == (size >= 20), "20 bytes are a counter block");
  require(text.starts_with(zt::TextOfReply(bytes)), "the text of a reply is its front");
  require(text.find(zt::ReadFirmwareVersion(text)) != std::string::npos, "a version is a part of the firmware text");

  const std::wstring_view host = zt::HostFromLocationUrl(wide);
  require(wide.find(host) != std::wstring::npos, "a host is a part of its URL");
  if (const auto port = zt::USBPortNumber(wide)) {
    require(size >= 2 && wide.back() >= L'0' && wide.back() <= L'9', "a port number ends the name");
    require(*port % 10 == static_cast<std::uint32_t>(wide.back() - L'0'),
            "a port number ends in the name's last digit");
  }
  if (const auto date = zt::ConvertDate(text)) {
    require(date->size() >= 10 && date->size() <= 13, "a date has 10 to 13 characters");
  }
  return 0;
}
