#include "Diagnosis.h"

namespace zt {
namespace {

constexpr std::wstring_view kLineEnd = L"\r\n";
constexpr std::wstring_view kMask = L"*****";

// Lines ends each line of the text, which may have any line ends, in CR LF.
std::wstring Lines(std::wstring_view text) {
  std::wstring lines;
  while (!text.empty()) {
    const std::size_t end = text.find_first_of(kLineEnd);
    lines.append(text.substr(0, end)).append(kLineEnd);
    if (end == std::wstring_view::npos) break;
    text.remove_prefix(end + (text.substr(end).starts_with(kLineEnd) ? kLineEnd.size() : 1));
  }
  return lines;
}

std::wstring Masked(std::wstring text, std::wstring_view community) {
  if (community.empty() || community == L"public") return text;
  for (std::size_t at = 0; (at = text.find(community, at)) != std::wstring::npos; at += kMask.size()) {
    text.replace(at, community.size(), kMask);
  }
  return text;
}

}  // namespace

std::wstring MakeDiagnosis(const std::vector<DiagnosisSection>& sections, std::wstring_view community) {
  std::wstring diagnosis;
  for (const DiagnosisSection& section : sections) {
    if (!diagnosis.empty()) diagnosis += kLineEnd;
    diagnosis.append(L"== ").append(section.title).append(L" ==").append(kLineEnd);
    for (const Row& row : section.rows) {
      std::wstring line = row.label + L":";
      if (!row.value.empty()) line += L" " + row.value;
      if (!row.remark.empty()) line += row.value.empty() ? L" " + row.remark : L" (" + row.remark + L")";
      diagnosis += Lines(line);
    }
    diagnosis += Lines(section.text);
  }
  return Masked(std::move(diagnosis), community);
}

}  // namespace zt
