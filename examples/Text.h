#pragma once

#include <ztsnmp/ztsnmp.h>

#include <algorithm>
#include <cstdio>
#include <string>

// What a device answers may be anything: line breaks, and what a terminal takes for a command.

inline bool isControl(unsigned char c) { return c < 0x20 || c == 0x7F; }

/// blanked shows a text on one line, with a blank for each control character.
inline std::string blanked(std::string text) {
  std::replace_if(text.begin(), text.end(), isControl, ' ');
  return text;
}

/// escaped shows all of a value on one line: a control character as "\x0A", a backslash as "\\".
inline std::string escaped(const SNMPDataType& value) {
  if (value.getDataType() != DataTypeOctetString) return value.toString();
  std::uint64_t length = 0;
  const unsigned char* const bytes = static_cast<const OctetString&>(value).getValue(length);
  std::string text;
  for (std::uint64_t i = 0; i < length; ++i) {
    if (isControl(bytes[i])) {
      char code[8];
      std::snprintf(code, sizeof(code), "\\x%02X", static_cast<unsigned>(bytes[i]));
      text += code;
    } else {
      if (bytes[i] == '\\') text += '\\';
      text += static_cast<char>(bytes[i]);
    }
  }
  return text;
}
