#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "IZOLTDataProvider.h"

namespace zt {

enum class ReportKind { PrintVolume, Protection };

// TextRange is a part of a shown text, in its characters.
struct TextRange {
  std::size_t begin = 0;
  std::size_t end = 0;  // the first one behind it
  bool operator==(const TextRange&) const = default;
};

// Finding is what the validator said, in words, and the element that it is about: the one that lacks something, where
// something is missing.
struct Finding {
  std::wstring text;
  TextRange element;
  bool operator==(const Finding&) const = default;
};

// Span is a part of a document in its own colour. What no span covers is plain text.
enum class SpanKind { Tag, Attribute, Comment };
struct Span {
  TextRange range;
  SpanKind kind;
  bool operator==(const Span&) const = default;
};

// Report is a report exactly as a run would post it.
struct Report {
  bool collected = false;
  std::string bytes;   // what is posted
  std::wstring shown;  // the same as text, with "\n" as line end
  std::vector<Finding> findings;
  std::vector<Span> spans;
  std::wstring problem;  // why it could not be collected
};

// MakeReport opens the printer and collects the report as the run of its kind does, but waits for no job of the queue.
// The provider is to be a new one: one that has delivered a protection report keeps the printer's document. `agreement`
// is the stored one, which the protection report carries.
Report MakeReport(ReportKind kind, IZOLTDataProvider& provider, bool agreement);

// ColourXml finds the spans of a document, which need not be well-formed.
std::vector<Span> ColourXml(std::wstring_view document);

}  // namespace zt
