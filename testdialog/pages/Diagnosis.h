#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Row.h"

namespace zt {

// DiagnosisSection is one page's share of the diagnosis.
struct DiagnosisSection {
  std::wstring title;
  std::vector<Row> rows;
  std::wstring text;  // below the rows; may be empty
};

// MakeDiagnosis joins the sections to one plain text for a ticket, lines ending in CR LF. Wherever the community occurs
// it is masked, unless it is "public", which is no secret.
std::wstring MakeDiagnosis(const std::vector<DiagnosisSection>& sections, std::wstring_view community);

}  // namespace zt
