#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

/// hasOwnNetwork reports whether this program runs in a network of its own, see sim/bin/in-namespace. Where it does
/// not, a line for the list of what was skipped is written: a test that needs one must send nothing.
inline bool hasOwnNetwork() {
  const char* const world = std::getenv("ZT_WORLD");
  if (world == nullptr || std::string_view(world) != "loopback") return true;
  const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
  std::printf("SKIPPED HERE: %s.%s: needs a network of its own\n", test.test_suite_name(), test.name());
  return false;
}
