#pragma once

#include <cstdio>
#include <cstdlib>

/// require ends the program, which libFuzzer reports with the input, when something does not hold.
inline void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}
