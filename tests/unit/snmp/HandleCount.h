#pragma once

#include <cstdint>

/// handleCount answers how many handles (descriptors) this process holds.
unsigned long handleCount();

/// isInherited answers whether programs that this process starts get the handle, too.
bool isInherited(std::intptr_t handle);

/// playOldSystem makes the system refuse to open sockets with the flag against inheritance, where that is a flag which
/// some systems do not know.
void playOldSystem(bool on);
