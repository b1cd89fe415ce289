#pragma once

#include <cstdint>

/// _MESSAGE is what the trap service puts into the shared memory for each trap: the datagram as it came in.
struct _MESSAGE {  // NOLINT(bugprone-reserved-identifier): the name that programs know
  std::uint32_t length;
  char data[1564];
};
static_assert(sizeof(_MESSAGE) == 1568);
