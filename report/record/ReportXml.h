#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "Codes.h"
#include "Xml.h"

namespace zt {

// ElementCode pairs an element of a report with the code of its absence. An element is there when its first child is a
// text.
struct ElementCode {
  const char* element;
  std::string_view code;
};

// ReportRules are the tables of one kind of report, in the order of the checks. A kind without `Count` or without
// values after the supplies leaves those tables empty.
struct ReportRules {
  std::span<const ElementCode> device;   // under `root`/`ZOLT`
  std::span<const ElementCode> counts;   // under its `Count`
  std::span<const ElementCode> toner;    // under each `Toner` of its `Supplies`, after the colour
  std::span<const ElementCode> closing;  // under `root`/`ZOLT` again
};

// FindReport returns the `ZOLT` element under `root`; null when there is none.
const tinyxml2::XMLElement* FindReport(const tinyxml2::XMLDocument& document);

// Gap is something that a document lacks.
struct Gap {
  std::string_view code;  // lives forever
  std::size_t element;    // which element lacks it, in the order of the document's start tags; the first is 0
  bool operator==(const Gap&) const = default;
};

// FindGaps checks a document against the rules. One that does not parse has the one gap "error:invalid xml data".
std::vector<Gap> FindGaps(std::string_view document, const ReportRules& rules);

// ValidateReport checks a document against the rules and adds the code of each missing element; true only when it added
// none. A document that does not parse replaces the codes by "error:invalid xml data".
bool ValidateReport(std::string_view document, const ReportRules& rules, Codes& codes);

// BeginningOf returns as much of a report's codes as a trace line takes: all those of four toners. A document that the
// printer delivered may hold any number of faulty toners. The result points into `codes`.
std::string_view BeginningOf(const Codes& codes);

}  // namespace zt
