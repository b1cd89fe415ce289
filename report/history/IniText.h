#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace zt {

// IniSection maps keys to values, IniSections section names to sections. All are bytes and compare as bytes.
using IniSection = std::map<std::string, std::string, std::less<>>;
using IniSections = std::map<std::string, IniSection, std::less<>>;

// ParseIni reads the text of a settings file. Lines end in LF or CRLF; CR, LF and blanks around lines, names and values
// do not count; ";" begins a comment anywhere in a line. Lines that are neither a section header nor hold a "=" are
// passed over, as are keys before the first section or in one without a name. Sections of one name are joined; of a key
// that occurs twice the first value counts. A section without keys is kept, unless it ends the file.
IniSections ParseIni(std::string_view text);

// FormatIni writes the text of a settings file: sections and keys in the order of the maps, lines ending in CRLF,
// nothing else. A line break inside a name or value is written as a blank, so that it cannot start a line.
std::string FormatIni(const IniSections& sections);

}  // namespace zt
