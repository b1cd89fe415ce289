#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zt {

// Trim removes every leading and trailing character that stands in `characters`. The result points into `text`.
std::string_view Trim(std::string_view text, std::string_view characters = "\r\n ");

// SplitAny cuts the text at every character of `delimiters`; runs of delimiters produce no empty tokens.
// The tokens point into `text`.
std::vector<std::string_view> SplitAny(std::string_view text, std::string_view delimiters);

// OnOneLine returns the text with a blank in place of each CR and LF: what printers, servers and users send must not
// start a line of its own in a file of lines.
std::string OnOneLine(std::string_view text);

// ReadLeadingDecimal reads a signed decimal number as stream extraction does: leading white space is skipped, reading
// stops at the first character that is not part of the number. A text that begins with no number gives 0; a number out
// of range gives the nearest int.
int ReadLeadingDecimal(std::string_view text);

// ReadLeadingUnsigned reads likewise, up to 4294967295. A negative number gives its 32 bits, which is far above what
// any figure can be.
std::uint32_t ReadLeadingUnsigned(std::string_view text);

// ParseDecimal reads a text that is a signed decimal number from its first to its last character; nothing for anything
// else.
std::optional<int> ParseDecimal(std::string_view text);

// EqualsIgnoringCase compares two texts; letters A to Z equal a to z, every other character only itself.
bool EqualsIgnoringCase(std::wstring_view left, std::wstring_view right);

}  // namespace zt
