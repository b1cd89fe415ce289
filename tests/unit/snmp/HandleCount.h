#pragma once

#include <cstdint>

/// handleCount answers how many handles (descriptors) this process holds.
unsigned long handleCount();

/// isInherited answers whether programs that this process starts get the handle, too.
bool isInherited(std::intptr_t handle);
