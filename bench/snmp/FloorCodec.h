#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

/// The least that the work can cost: hand-written, for these messages only and without any care. All lies on the stack
/// or in place but a received text, which has a block of its own: it outlives its message, may have 1024 bytes, and
/// nobody keeps room for so many in each binding.

struct FloorBinding {
  char name[256];
  std::uint8_t type;
  std::int64_t number;
  std::unique_ptr<char[]> text;
};

std::size_t floorEncodeGet(std::span<const char* const> names, std::uint8_t* out);
bool floorDecode(const std::uint8_t* message, std::size_t length, std::span<FloorBinding> bindings);
