#include "LocationUrl.h"

#include <gtest/gtest.h>

#include <string>

namespace zt {
namespace {

TEST(LocationUrl, GivesTheHost) {
  const std::pair<const wchar_t*, const wchar_t*> rows[] = {
      {L"http://192.168.1.20:80/WSD", L"192.168.1.20"},
      {L"http://[fe80::1]:80/WSD", L"fe80::1"},
      {L"http://[fe80::1%4]", L"fe80::1%4"},
      {L"x:printer", L"printer"},
      {L":/printer/", L"printer"},
      {L"http:///printer", L""},  // two slashes are skipped, no more
      {L"http://printer]/", L"printer]"},
      {L"192.168.1.20", L""},  // no scheme, so no host either
      {L"http://:80/", L""},
      {L"http://[]/", L""},
      {L"http://[fe80::1", L""},  // never closed
  };
  for (const auto& [url, host] : rows) EXPECT_EQ(HostFromLocationUrl(url), host);
}

}  // namespace
}  // namespace zt
