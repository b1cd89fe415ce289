#include "Diagnosis.h"

#include "Joined.h"
#include "Words.h"

namespace zt {
namespace {

constexpr std::wstring_view kLineEnd = L"\r\n";
constexpr std::wstring_view kMask = L"*****";

// The text with a line end behind its last line, too.
std::wstring Lines(std::wstring_view text) {
  std::wstring lines = WithLineEnds(text);
  if (!lines.empty() && !lines.ends_with(kLineEnd)) lines += kLineEnd;
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
    diagnosis += Joined({"== ", section.title, " ==", kLineEnd});
    for (const Row& row : section.rows) {
      std::wstring line = Joined({row.label, row.value.empty() ? Ascii(":") : Ascii(": "), row.value});
      if (!row.remark.empty()) line += row.value.empty() ? Joined({" ", row.remark}) : Joined({" (", row.remark, ")"});
      diagnosis += Lines(line);
    }
    diagnosis += Lines(section.text);
  }
  return Masked(std::move(diagnosis), community);
}

}  // namespace zt
