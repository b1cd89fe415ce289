#pragma once

#include <span>
#include <string>
#include <string_view>

#include "Xml.h"

namespace zt {

// ElementMessage pairs an element of a report with what is said when it is missing. An element is there when its first
// child is a text.
struct ElementMessage {
  const char* element;
  std::string_view message;
};

// ReportRules are the tables of one kind of report, in the order of the checks. A kind without `Count` or without
// values after the supplies leaves those tables empty.
struct ReportRules {
  std::span<const ElementMessage> device;   // under `root`/`ZOLT`
  std::span<const ElementMessage> counts;   // under its `Count`
  std::span<const ElementMessage> toner;    // under each `Toner` of its `Supplies`, after the colour
  std::span<const ElementMessage> closing;  // under `root`/`ZOLT` again
};

// FindReport answers the `ZOLT` element under `root`; null when there is none.
const tinyxml2::XMLElement* FindReport(const tinyxml2::XMLDocument& document);

// ValidateReport checks a document against the rules and appends the message of each missing element to `messages`;
// true only when it appended none. A document that does not parse replaces the messages by "error:invalid xml data".
bool ValidateReport(std::string_view document, const ReportRules& rules, std::string& messages);

// BeginningOfFindings answers as much of a report's findings as a trace line takes: all those of four toners. A
// document that the printer delivered may hold any number of faulty toners. The result points into `findings`.
std::string_view BeginningOfFindings(std::string_view findings);

}  // namespace zt
