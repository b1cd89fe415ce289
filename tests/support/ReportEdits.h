#pragma once

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <string_view>

#include "Codes.h"

namespace zt {

// Edited answers the text with every occurrence of `from`, if that is not empty, replaced.
inline std::string Edited(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = 0; !from.empty() && (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

// ReportEdit is an edit of a complete report, and what its validator finds then.
struct ReportEdit {
  std::string_view from;
  std::string_view to;
  std::string_view findings;
};

// ExpectFindings validates each edit of the report as a document of that kind of record.
template <class Record>
void ExpectFindings(const std::string& report, std::span<const ReportEdit> edits) {
  for (const ReportEdit& edit : edits) {
    Codes codes;
    EXPECT_EQ(Record::ValidateXml(Edited(report, edit.from, edit.to), codes), edit.findings.empty()) << edit.from;
    EXPECT_EQ(codes.Text(), edit.findings) << edit.from << " -> " << edit.to;
  }
}

}  // namespace zt
