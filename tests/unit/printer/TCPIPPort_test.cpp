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
  const struct {
    std::u16string hostAddress;
    std::u16string community;
    std::u16string ipAddress;
    TCPIPPortAddress port;
  } rows[] = {
      {u"printer.example", u"public", u"192.168.1.20", {L"192.168.1.20", L"public"}},
      {u"printer.example", u"", u"", {L"printer.example", L""}},
      {u"", u"", u"", {L"", L""}},
      {u"fe80::1", u"\u00e9\u4e2d", u"", {L"fe80::1", L"\u00e9\u4e2d"}},
      // Fields filled to their end without a terminator end there.
      {std::u16string(49, u'h'), std::u16string(33, u'c'), u"", {std::wstring(49, L'h'), std::wstring(33, L'c')}},
      {u"h", std::u16string(33, u'c'), std::u16string(16, u'1'), {std::wstring(16, L'1'), std::wstring(33, L'c')}},
  };
  for (const auto& row : rows) {
    PortConfiguration reply{};
    Store(reply, 144, row.hostAddress);
    Store(reply, 242, row.community);
    Store(reply, 378, row.ipAddress);
    EXPECT_EQ(ReadPortConfiguration(reply), row.port);
  }
}

}  // namespace
}  // namespace zt
