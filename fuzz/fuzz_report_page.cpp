// The test dialog's view of a report that was made of a printer's document: colours and findings stand where they
// belong.

#include <algorithm>
#include <vector>

#include "PPAInformation.h"
#include "ReportPage.h"
#include "Require.h"
#include "RunFakes.h"
#include "XmlText.h"

namespace {

class Printer : public zt::RunWorld {
 public:
  Printer(const std::string& document, bool delivers) : document_(document), delivers_(delivers) {}
  bool CollectZOLT(zt::ZOLTInformation& record) override {
    record.SetDocumentMode(delivers_);
    return collect(record);
  }
  bool CollectSBX(zt::PPAInformation& record) override { return collect(record); }

 private:
  bool collect(zt::ReportRecord& record) const {
    zt::Codes codes;
    record.SetDocument(document_);
    if (!delivers_) static_cast<void>(record.ReadXml(record.Document(), codes));
    record.ReadCountsAndSupplies(record.Document(), codes);
    return !document_.empty();
  }

  const std::string& document_;
  bool delivers_;
};

class Names : public tinyxml2::XMLVisitor {
 public:
  bool VisitEnter(const tinyxml2::XMLElement& element, const tinyxml2::XMLAttribute*) override {
    const std::string_view name = element.Name();
    list.emplace_back(name.begin(), name.end());
    return true;
  }
  std::vector<std::string> list;
};

void check(zt::ReportKind kind, const std::string& document, bool delivers) {
  Printer printer(document, delivers);
  if (document.size() % 16 == 2) printer.odd = "GetTonerLife";
  if (document.size() % 16 == 1) printer.odd = "Initialize(1)";
  printer.jobsPending = delivers;
  const zt::Report report = zt::MakeReport(kind, printer, delivers);
  require(report.collected == report.problem.empty(), "any document makes a report, or there is a reason");
  std::size_t end = 0;
  for (const zt::Span& span : report.spans) {
    require(span.range.begin >= end && span.range.end > span.range.begin, "spans stand one behind the other");
    end = span.range.end;
  }
  require(end <= report.shown.size(), "the last one ends within the text");

  zt::DeviceDocument parsed(report.bytes);
  if (!parsed.Tree()) return;
  Names names;
  parsed.Tree()->Accept(&names);
  const std::vector<zt::Gap> gaps = kind == zt::ReportKind::PrintVolume ? zt::ZOLTInformation::FindGaps(report.bytes)
                                                                        : zt::PPAInformation::FindGaps(report.bytes);
  for (std::size_t i = 0; i < std::min<std::size_t>(gaps.size(), 500) && !names.list.empty(); ++i) {
    const zt::TextRange tag = report.findings.at(i).element;
    require(tag.begin < tag.end && tag.end <= report.shown.size(), "a finding has a place");
    const std::string& name = names.list.at(gaps[i].element);
    // A name of ASCII only has its bytes as characters.
    if (std::ranges::any_of(name, [](char c) { return (c & 0x80) != 0; })) continue;
    require(std::wstring_view(report.shown).substr(tag.begin + 1).starts_with(std::wstring(name.begin(), name.end())),
            "a finding stands at its element");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string document = xmlText(data, size);
  check(zt::ReportKind::PrintVolume, document, true);
  check(zt::ReportKind::PrintVolume, document, false);
  check(zt::ReportKind::Protection, document, false);
  return 0;
}
