// Mutations that keep a message whole: one element of it is changed, and the lengths around that are put right, so that
// the change gets past the checks of lengths. Every other mutation is libFuzzer's own.

#include <algorithm>
#include <cstdint>
#include <optional>
#include <random>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t room);

namespace {

using Bytes = std::vector<std::uint8_t>;

struct Element {
  std::size_t begin;
  std::size_t content;
  std::size_t end;
};

std::optional<Element> elementAt(const Bytes& bytes, std::size_t begin, std::size_t end) {
  if (end - begin < 2) return std::nullopt;
  std::size_t content = begin + 2;
  std::size_t length = bytes[begin + 1];
  if (length >= 0x80) {
    const std::size_t more = length & 0x7F;
    if (more > 4 || more > end - content) return std::nullopt;
    length = 0;
    for (const std::size_t first = content + more; content < first; ++content) length = length << 8 | bytes[content];
  }
  if (length > end - content) return std::nullopt;
  return Element{begin, content, content + length};
}

void append(Bytes& to, const Bytes& from, std::size_t begin, std::size_t end) {
  to.insert(to.end(), from.begin() + static_cast<std::ptrdiff_t>(begin),
            from.begin() + static_cast<std::ptrdiff_t>(end));
}

Bytes encoded(std::uint8_t tag, const Bytes& content) {
  Bytes bytes = {tag};
  const std::size_t length = content.size();
  if (length >= 0x100) bytes.insert(bytes.end(), {0x82, static_cast<std::uint8_t>(length >> 8)});
  if (length >= 0x80 && length < 0x100) bytes.push_back(0x81);
  bytes.push_back(static_cast<std::uint8_t>(length));
  append(bytes, content, 0, length);
  return bytes;
}

/// The element with itself, or one within it, changed.
Bytes changed(const Bytes& bytes, const Element& element, std::minstd_rand& random) {
  constexpr std::uint8_t kTags[] = {0x02, 0x04, 0x05, 0x06, 0x30, 0x40, 0x41, 0x42, 0x43, 0x46, 0xA2, 0xA4};
  std::vector<Element> children;
  std::optional<Element> next;
  for (std::size_t at = element.content; (bytes[element.begin] & 0x20) != 0 && at < element.end; at = next->end) {
    next = elementAt(bytes, at, element.end);
    if (!next) break;
    children.push_back(*next);
  }
  std::uint8_t tag = bytes[element.begin];
  Bytes content;
  if (children.empty() || random() % 8 == 0) {
    append(content, bytes, element.content, element.end);
    if (random() % 4 == 0) tag = kTags[random() % std::size(kTags)];
    const std::size_t size = content.size();
    content.resize(size + 16);
    content.resize(LLVMFuzzerMutate(content.data(), size, content.size()));
    return encoded(tag, content);
  }
  const std::size_t chosen = random() % children.size();
  for (std::size_t i = 0; i < children.size(); ++i) {
    const unsigned action = i == chosen ? random() % 8 : 8;
    const Element& other = action == 1 ? children[random() % children.size()] : children[i];
    if (action == 0) continue;
    if (action > 2 && action < 8) {
      const Bytes child = changed(bytes, children[i], random);
      append(content, child, 0, child.size());
    } else {
      for (unsigned times = action == 2 ? 2 : 1; times > 0; --times) append(content, bytes, other.begin, other.end);
    }
  }
  append(content, bytes, children.back().end, element.end);
  return encoded(tag, content);
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t room, unsigned seed) {
  std::minstd_rand random(seed);
  const Bytes before(data, data + size);
  // A target may have up to two bytes of its own before the message.
  const auto begin = static_cast<std::size_t>(std::find(before.begin(), before.end(), 0x30) - before.begin());
  const auto message = begin <= 2 && begin < size ? elementAt(before, begin, size) : std::nullopt;
  if (!message || random() % 2 == 0) return LLVMFuzzerMutate(data, size, room);
  Bytes after(before.begin(), before.begin() + static_cast<std::ptrdiff_t>(begin));
  const Bytes mutated = changed(before, *message, random);
  append(after, mutated, 0, mutated.size());
  append(after, before, message->end, size);
  after.resize(std::min(after.size(), room));
  std::copy(after.begin(), after.end(), data);
  return after.size();
}
