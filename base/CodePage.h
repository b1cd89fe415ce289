#pragma once

#include <string>
#include <string_view>

namespace zt {

// ToNarrow converts UTF-16 text to the system ANSI code page; characters that it lacks become its default character.
// Where there is no such code page (any system but Windows) the result is UTF-8.
std::string ToNarrow(std::wstring_view text);

// ToWide converts text of the system ANSI code page (UTF-8 where there is none) to wide text. Bytes that are invalid
// there become replacement characters.
std::wstring ToWide(std::string_view text);

// DecodeText converts text of unknown encoding, as printers send it: valid UTF-8 as such, anything else as ToWide does.
std::wstring DecodeText(std::string_view text);

// ToUtf8 converts wide text to UTF-8, whatever the code page.
std::string ToUtf8(std::wstring_view text);

// IsLeadByte reports whether the byte opens a double-byte character of the system ANSI code page. False where there is
// none.
bool IsLeadByte(unsigned char byte);

}  // namespace zt
