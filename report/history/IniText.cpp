#include "IniText.h"

#include <algorithm>

#include "Text.h"

namespace zt {
namespace {

std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
}

}  // namespace

IniSections ParseIni(std::string_view text) {
  IniSections sections;
  std::string name;
  while (!text.empty()) {
    std::string_view line = TakeLine(text);
    line = Trim(line.substr(0, line.find(';')));
    if (line.starts_with('[') && line.ends_with(']')) {
      // The section that ends here is kept even when it holds no key.
      if (!name.empty()) sections.try_emplace(name);
      name = Trim(line.substr(1, line.size() - 2));
      continue;
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || name.empty()) continue;
    // The first value is the newest: a file that was once longer still ends with lines of its old text.
    sections[name].try_emplace(std::string(Trim(line.substr(0, equals))), Trim(line.substr(equals + 1)));
  }
  return sections;
}

std::string FormatIni(const IniSections& sections) {
  std::string text;
  for (const auto& [name, section] : sections) {
    text += "[" + OnOneLine(name) + "]\r\n";
    for (const auto& [key, value] : section) text += OnOneLine(key) + "=" + OnOneLine(value) + "\r\n";
  }
  return text;
}

}  // namespace zt
