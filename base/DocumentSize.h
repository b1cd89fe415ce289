#pragma once

#include <cstddef>

namespace zt {

// kLongestDocument is the most bytes that are taken of an XML document from outside: of a printer's own, over HTTP or
// USB, and of a server's answer. Real ones have a few kilobytes. Parsed, a document of many small nodes takes some
// sixty times the memory of its text.
inline constexpr std::size_t kLongestDocument = std::size_t{1024} * 1024;

}  // namespace zt
