#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// The least that the work can cost: hand-written, on the stack, for these messages only and without any care.

struct FloorBinding {
  char name[256];
  std::uint8_t type;
  std::int64_t number;
  char text[1025];
};

std::size_t floorEncodeGet(std::span<const char* const> names, std::uint8_t* out);
bool floorDecode(const std::uint8_t* message, std::size_t length, std::span<FloorBinding> bindings);
