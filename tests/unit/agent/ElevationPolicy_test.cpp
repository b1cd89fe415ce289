#include "ElevationPolicy.h"

#include <gtest/gtest.h>

namespace zt {
namespace {

TEST(ElevationPolicy, TheNameChangesTheLastBytes) {
  const struct {
    const char* baseName;
    const char* identifier;
  } rows[] = {
      {"", "{9073F4DF-475C-4DAD-93BB-8C4F61320470}"},
      {"ZT", "{9073F4DF-475C-4DAD-93BB-D61B61320470}"},
      {"Agent7 and more", "{9073F4DF-475C-4DAD-93BB-CD28045C7047}"},
      {"\xE3\x82\xBC", "{9073F4DF-475C-4DAD-93BB-6FCDDD320470}"},  // one character of three bytes
  };
  for (const auto& row : rows) EXPECT_EQ(ElevationPolicyIdentifier(row.baseName), row.identifier);
}

}  // namespace
}  // namespace zt
