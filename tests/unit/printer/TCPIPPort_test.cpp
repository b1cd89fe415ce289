#include "TCPIPPort.h"

#include <gtest/gtest.h>

namespace zt {
namespace {

void Store(PortConfiguration& reply, std::size_t offset, std::u16string_view text) {
  for (const char16_t unit : text) {
    reply[offset++] = static_cast<std::byte>(unit & 0xFF);
    reply[offset++] = static_cast<std::byte>(unit >> 8);
  }
}

TEST(TCPIPPort, PrefersTheIPAddress) {
  const std::u16string longAddress(16, u'1');
  const std::u16string longCommunity(33, u'c');
  const std::tuple<std::u16string, std::u16string, std::u16string, TCPIPPortAddress> rows[] = {
      // host name, community, IP address
      {u"printer.example", u"public", u"192.168.1.20", {L"192.168.1.20", L"public"}},
      {u"fe80::1", u"\u00e9\u4e2d", u"", {L"fe80::1", L"\u00e9\u4e2d"}},
      // Fields filled to their end without a terminator end there.
      {std::u16string(49, u'h'), longCommunity, u"", {std::wstring(49, L'h'), std::wstring(33, L'c')}},
      {u"h", longCommunity, longAddress, {std::wstring(16, L'1'), std::wstring(33, L'c')}},
  };
  for (const auto& [host, community, address, port] : rows) {
    PortConfiguration reply{};
    Store(reply, 144, host);
    Store(reply, 242, community);
    Store(reply, 378, address);
    EXPECT_EQ(ReadPortConfiguration(reply), port);
  }
}

}  // namespace
}  // namespace zt
