#include "ReportPage.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "VirtualZOLTDataProvider.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

// DocumentPrinter delivers its report itself; without a document it fails.
class DocumentPrinter : public VirtualZOLTDataProvider {
 public:
  explicit DocumentPrinter(std::string document) : VirtualZOLTDataProvider(L"Q"), document_(std::move(document)) {}

  bool CollectZOLT(ZOLTInformation& record) override {
    record.SetDocument(document_);
    record.SetDocumentMode(true);
    return !document_.empty();
  }

 private:
  std::string document_;
};

// A finding as its text and the text of its element.
std::vector<std::wstring> Findings(const Report& report) {
  std::vector<std::wstring> texts;
  for (const auto& [text, element] : report.findings) {
    texts.push_back(text + L" -> " + report.shown.substr(element.begin, element.end - element.begin));
  }
  return texts;
}

TEST(ReportPage, ShowsWhatIsPostedAndWhereItHasGaps) {
  VirtualZOLTDataProvider whole(L"Q");
  const Report volume = MakeReport(ReportKind::PrintVolume, whole, false);
  EXPECT_TRUE(volume.bytes.starts_with("<"));
  EXPECT_EQ(Findings(volume), std::vector<std::wstring>{L"Note: the source type (SourceType) is missing: the queue "
                                                        L"has not the universal driver. -> <ZOLT>"});
  const Report protection = MakeReport(ReportKind::Protection, whole, true);
  EXPECT_NE(protection.bytes.find("<SBX>160</SBX>"), std::string::npos);
  EXPECT_NE(protection.bytes.find("<ZOLTAgree>1</ZOLTAgree>"), std::string::npos);
  EXPECT_TRUE(protection.findings.empty());

  DocumentPrinter gaps(
      "<root><!-- <no/> --><ZOLT a='>'><Supplies><TonerBox/><Toner><Color>C</Color></Toner>"
      "<Toner id=\"2\"><Color>Z</Color></Toner></Supplies></ZOLT></root>");
  const std::vector<std::wstring> findings = Findings(MakeReport(ReportKind::PrintVolume, gaps, false));
  const auto has = [&](const wchar_t* text) { return std::ranges::find(findings, text) != findings.end(); };
  EXPECT_TRUE(has(L"Error: the model (MDL) is missing. -> <ZOLT a=\"&gt;\">")) << testing::PrintToString(findings);
  EXPECT_TRUE(has(L"Error, toner 1: the toner's model (ModelID) is missing. -> <Toner>"));
  EXPECT_TRUE(has(L"Error, toner 2: the colour (Color) is none of C, M, Y and K. -> <Toner id=\"2\">"));

  DocumentPrinter noXml("<root>\r<\xE9");
  EXPECT_EQ(Findings(MakeReport(ReportKind::PrintVolume, noXml, false)).at(0).substr(0, 42),
            L"Error: this is no well-formed XML document");
  DocumentPrinter nothing("");
  const Report failed = MakeReport(ReportKind::PrintVolume, nothing, false);
  EXPECT_FALSE(failed.collected);
  EXPECT_FALSE(failed.problem.empty());
}

TEST(ReportPage, ColoursWhateverItIsGiven) {
  struct Row {
    const wchar_t* document;
    const wchar_t* coloured;  // each span in brackets behind its letter
  };
  for (const Row& row :
       {Row{L"<?xml?>a<b/>c</d>", L"T[<?xml?>]a T[<b/>]c T[</d>]"},
        Row{L"<a b=\"1>2\" c='\"'>t", L"T[<a] A[b=\"1>2\" c='\"'] T[>]t"}, Row{L"<a b />", L"T[<a] A[b] T[/>]"},
        Row{L"<!-- <a> -->x<![CDATA[<b>]]>", L"C[<!-- <a> -->]x<![CDATA[<b>]]>"}, Row{L"x<", L"x T[<]"},
        Row{L"<a b=\"", L"T[<a] A[b=\"]"}, Row{L"<!--", L"C[<!--]"}, Row{L"<>", L"T[<>]"}, Row{L"< />", L"T[< />]"}}) {
    std::wstring coloured;
    std::size_t at = 0;
    const std::wstring document = row.document;
    for (const Span& span : ColourXml(document)) {
      ASSERT_TRUE(at <= span.range.begin && span.range.begin < span.range.end && span.range.end <= document.size());
      coloured += document.substr(at, span.range.begin - at);
      if (!coloured.empty() && coloured.back() != L' ') coloured += L' ';
      coloured += L"TAC"[static_cast<int>(span.kind)];
      coloured += L"[" + document.substr(span.range.begin, span.range.end - span.range.begin) + L"]";
      at = span.range.end;
    }
    EXPECT_EQ(coloured + document.substr(at), row.coloured);
  }
}

}  // namespace
}  // namespace zt
