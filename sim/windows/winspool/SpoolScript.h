#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// ScriptSection: one "[queue NAME]" or "[port NAME]" section of the script, or its "[spooler]" section, which holds for
// every call.
class ScriptSection {
 public:
  ScriptSection(std::wstring kind, std::wstring name) : kind_(std::move(kind)), name_(std::move(name)) {}

  const std::wstring& kind() const { return kind_; }
  const std::wstring& name() const { return name_; }

  void Set(const std::wstring& key, const std::wstring& value) { values_[key] = value; }

  // Text: the value of a key, absent when the script has no such key. An empty value is not absent.
  std::optional<std::wstring> Text(std::wstring_view key) const;

  // Number: the first number of a value, decimal or with 0x; fallback when the key is absent.
  unsigned long Number(std::wstring_view key, unsigned long fallback) const;

  // Next: the value as a list of numbers separated by blanks, from which each call takes the next one; the last one
  // stays. Absent when the key is.
  std::optional<unsigned long> Next(std::wstring_view key);

  // Peek: what Next will take, without taking it.
  std::optional<unsigned long> Peek(std::wstring_view key) const;

 private:
  std::wstring kind_;
  std::wstring name_;
  std::map<std::wstring, std::wstring, std::less<>> values_;
  std::map<std::wstring, size_t, std::less<>> taken_;
};

// SpoolScript: what the simulated spooler serves, read once per process. Any thread may read it; Next is only called
// under the spooler's lock.
class SpoolScript {
 public:
  static SpoolScript& Instance();

  // Parse: UTF-8 text. "#" and ";" open a line of comment, a value in double quotes keeps its blanks.
  void Parse(std::string_view text);

  std::vector<ScriptSection*> All(std::wstring_view kind);
  ScriptSection* Find(std::wstring_view kind, std::wstring_view name);
  ScriptSection& Common() { return common_; }

 private:
  std::vector<ScriptSection> sections_;
  ScriptSection common_{L"spooler", L""};
};
