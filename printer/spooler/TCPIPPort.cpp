#include "TCPIPPort.h"

namespace zt {
namespace {

// A text field of PORT_DATA_1.
struct Field {
  std::size_t offset;      // bytes
  std::size_t characters;  // with the terminator
};
constexpr Field kHostAddressField{144, 49};
constexpr Field kCommunityField{242, 33};
constexpr Field kIPAddressField{378, 16};

std::wstring ReadField(const PortConfiguration& reply, Field field) {
  std::wstring text;
  for (std::size_t index = 0; index < field.characters; ++index) {
    const std::size_t at = field.offset + index * 2;
    const auto unit =
        static_cast<wchar_t>(std::to_integer<unsigned>(reply[at]) | std::to_integer<unsigned>(reply[at + 1]) << 8);
    if (unit == 0) break;
    text += unit;
  }
  return text;
}

}  // namespace

TCPIPPortAddress ReadPortConfiguration(const PortConfiguration& reply) {
  TCPIPPortAddress port{ReadField(reply, kIPAddressField), ReadField(reply, kCommunityField)};
  if (port.address.empty()) port.address = ReadField(reply, kHostAddressField);
  return port;
}

}  // namespace zt
