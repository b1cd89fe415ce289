#pragma once

#include <cstdint>
#include <ctime>
#include <functional>

namespace zt {

// Now returns the current time in seconds since 1970-01-01 UTC. Rules take it as an argument and never ask the clock
// themselves.
using Now = std::function<std::time_t()>;

// Pause holds the calling thread for the given number of milliseconds. Handed in wherever a protocol waits, so that no
// test does.
using Pause = std::function<void(std::uint32_t milliseconds)>;

// SystemPause is the Pause of the running agent (Windows only).
void SystemPause(std::uint32_t milliseconds);

}  // namespace zt
