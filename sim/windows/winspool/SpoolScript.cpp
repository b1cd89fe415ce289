#include "SpoolScript.h"

#include <algorithm>

#include "SpoolFiles.h"

namespace {

std::string_view Trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(" \t\r");
  return first == text.npos ? std::string_view() : text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::string_view Unquoted(std::string_view value) {
  const bool quoted = value.size() >= 2 && value.front() == '"' && value.back() == '"';
  return quoted ? value.substr(1, value.size() - 2) : value;
}

std::vector<unsigned long> Numbers(const std::wstring& value) {
  std::vector<unsigned long> numbers;
  const wchar_t* position = value.c_str();
  for (;;) {
    wchar_t* end = nullptr;
    const unsigned long number = wcstoul(position, &end, 0);
    if (end == position) return numbers;
    numbers.push_back(number);
    position = end;
  }
}

}  // namespace

std::optional<std::wstring> ScriptSection::Text(std::wstring_view key) const {
  const auto value = values_.find(key);
  if (value == values_.end()) return std::nullopt;
  return value->second;
}

unsigned long ScriptSection::Number(std::wstring_view key, unsigned long fallback) const {
  const auto value = Text(key);
  const auto numbers = value ? Numbers(*value) : std::vector<unsigned long>();
  return numbers.empty() ? fallback : numbers.front();
}

std::optional<unsigned long> ScriptSection::Peek(std::wstring_view key) const {
  const auto value = Text(key);
  const auto numbers = value ? Numbers(*value) : std::vector<unsigned long>();
  if (numbers.empty()) return std::nullopt;
  const auto taken = taken_.find(key);
  return numbers[std::min(taken == taken_.end() ? 0 : taken->second, numbers.size() - 1)];
}

std::optional<unsigned long> ScriptSection::Next(std::wstring_view key) {
  const auto number = Peek(key);
  if (number) ++taken_[std::wstring(key)];
  return number;
}

SpoolScript& SpoolScript::Instance() {
  static SpoolScript script = [] {
    SpoolScript loaded;
    loaded.Parse(ReadSpoolScript());
    return loaded;
  }();
  return script;
}

void SpoolScript::Parse(std::string_view text) {
  ScriptSection* section = &common_;
  while (!text.empty()) {
    const size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = Trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.empty() || line.front() == '#' || line.front() == ';') continue;

    if (line.front() == '[') {
      const std::string_view header = line.substr(1, line.find(']') - 1);
      const size_t blank = std::min(header.find(' '), header.size());
      if (header == "spooler") {
        section = &common_;
      } else {
        section = &sections_.emplace_back(WideFromUtf8(header.substr(0, blank)),
                                          WideFromUtf8(Unquoted(Trimmed(header.substr(blank)))));
      }
      continue;
    }
    const size_t equals = line.find('=');
    if (equals == line.npos) continue;
    section->Set(WideFromUtf8(Trimmed(line.substr(0, equals))),
                 WideFromUtf8(Unquoted(Trimmed(line.substr(equals + 1)))));
  }
}

std::vector<ScriptSection*> SpoolScript::All(std::wstring_view kind) {
  std::vector<ScriptSection*> found;
  for (ScriptSection& section : sections_) {
    if (section.kind() == kind) found.push_back(&section);
  }
  return found;
}

ScriptSection* SpoolScript::Find(std::wstring_view kind, std::wstring_view name) {
  for (ScriptSection& section : sections_) {
    if (section.kind() == kind && section.name() == name) return &section;
  }
  return nullptr;
}
