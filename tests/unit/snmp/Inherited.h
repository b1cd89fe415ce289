#pragma once

#include <cstdint>

/// isInherited answers whether programs that this process starts get the handle, too.
bool isInherited(std::intptr_t handle);
