#include "FloorCodec.h"

#include <charconv>
#include <cstring>

namespace {

std::uint8_t* encodeName(const char* name, std::uint8_t* out) {
  std::uint8_t* const length = out + 1;
  *out = 6;
  out += 2;
  std::uint32_t first = 0;
  for (int arcs = 0; *name != '\0'; ++arcs) {
    std::uint32_t arc = 0;
    for (; *name >= '0'; ++name) arc = arc * 10 + static_cast<std::uint32_t>(*name - '0');
    if (*name == '.') ++name;
    if (arcs == 0) {
      first = arc;
      continue;
    }
    if (arcs == 1) arc += first * 40;
    if (arc >= 1U << 14) *out++ = static_cast<std::uint8_t>(0x80 | arc >> 14);
    if (arc >= 1U << 7) *out++ = static_cast<std::uint8_t>(0x80 | arc >> 7);
    *out++ = arc & 0x7F;
  }
  *length = static_cast<std::uint8_t>(out - length - 1);
  return out;
}

const std::uint8_t* enter(const std::uint8_t* in, std::size_t& length) {
  length = in[1];
  if (length < 0x80) return in + 2;
  const int bytes = in[1] & 0x7F;
  length = 0;
  for (int i = 0; i < bytes; ++i) length = length << 8 | in[2 + i];
  return in + 2 + bytes;
}

void decodeName(const std::uint8_t* in, std::size_t length, char* out) {
  out = std::to_chars(out, out + 10, *in / 40).ptr;
  *out++ = '.';
  out = std::to_chars(out, out + 10, *in % 40).ptr;
  for (std::size_t i = 1; i < length;) {
    std::uint32_t arc = 0;
    do arc = arc << 7 | (in[i] & 0x7F);
    while (in[i++] & 0x80);
    *out++ = '.';
    out = std::to_chars(out, out + 10, arc).ptr;
  }
  *out = '\0';
}

}  // namespace

std::size_t floorEncodeGet(std::span<const char* const> names, std::uint8_t* out) {
  std::uint8_t list[1500];
  std::uint8_t* end = list;
  for (const char* name : names) {
    std::uint8_t* const binding = end;
    end = encodeName(name, binding + 2);
    *end++ = 5;
    *end++ = 0;
    binding[0] = 0x30;
    binding[1] = static_cast<std::uint8_t>(end - binding - 2);
  }
  const auto listLength = static_cast<std::size_t>(end - list);
  // Long form throughout, so that nothing moves.
  static const std::uint8_t head[] = {0x30, 0x82, 0, 0, 2, 1, 0, 4, 6, 'p', 'u', 'b', 'l',  'i',  'c', 0xA0,
                                      0x82, 0,    0, 2, 1, 0, 2, 1, 0, 2,   1,   0,   0x30, 0x82, 0,   0};
  std::memcpy(out, head, sizeof(head));
  const auto put = [out](std::size_t at, std::size_t value) {
    out[at] = static_cast<std::uint8_t>(value >> 8);
    out[at + 1] = static_cast<std::uint8_t>(value);
  };
  put(2, sizeof(head) - 4 + listLength);
  put(17, sizeof(head) - 19 + listLength);
  put(30, listLength);
  std::memcpy(out + sizeof(head), list, listLength);
  return sizeof(head) + listLength;
}

bool floorDecode(const std::uint8_t* message, std::size_t, std::span<FloorBinding> bindings) {
  std::size_t length = 0;
  const std::uint8_t* in = enter(message, length);
  in += 3;
  in = enter(in, length) + length;
  if (*in != 0xA2) return false;
  in = enter(in, length) + 9;
  in = enter(in, length);
  for (FloorBinding& binding : bindings) {
    in = enter(in, length);
    in = enter(in, length);
    decodeName(in, length, binding.name);
    in += length;
    binding.type = *in;
    in = enter(in, length);
    if (binding.type == 4) {
      binding.text = std::make_unique_for_overwrite<char[]>(length + 1);
      std::memcpy(binding.text.get(), in, length);
      binding.text[length] = '\0';
    } else {
      binding.number = static_cast<std::int8_t>(*in);
      for (std::size_t i = 1; i < length; ++i) binding.number = binding.number << 8 | in[i];
    }
    in += length;
  }
  return true;
}
