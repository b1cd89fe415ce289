#include "LocationUrl.h"

#include <gtest/gtest.h>

#include <string>

namespace zt {
namespace {

TEST(LocationUrl, GivesTheHost) {
  const struct {
    std::wstring url;
    std::wstring host;
  } rows[] = {
      {L"http://192.168.1.20:80/WSD", L"192.168.1.20"},
      {L"http://192.168.1.20/WSD", L"192.168.1.20"},
      {L"http://[fe80::1]:80/WSD", L"fe80::1"},
      {L"http://[fe80::1%4]", L"fe80::1%4"},
      {L"https://printer.example:5358/", L"printer.example"},
      {L"x:printer", L"printer"},
      {L":/printer/", L"printer"},
      {L"http:///printer", L""},  // two slashes are skipped, no more
      {L"http://printer]/", L"printer]"},
      {L"", L""},
      {L"192.168.1.20", L""},  // no scheme, so no host either
      {L"http://", L""},
      {L"http://:80/", L""},
      {L"http://[]/", L""},
      {L"http://[fe80::1", L""},  // never closed
  };
  for (const auto& row : rows) EXPECT_EQ(HostFromLocationUrl(row.url), row.host);
}

}  // namespace
}  // namespace zt
