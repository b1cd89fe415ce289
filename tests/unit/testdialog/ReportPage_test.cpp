#include "ReportPage.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "VirtualZOLTDataProvider.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

// DocumentPrinter delivers its report itself.
class DocumentPrinter : public VirtualZOLTDataProvider {
 public:
  explicit DocumentPrinter(std::string document) : VirtualZOLTDataProvider(L"Q"), document_(std::move(document)) {}

  bool CollectZOLT(ZOLTInformation& record) override {
    record.SetDocument(document_);
    record.SetDocumentMode(true);
    return true;
  }

 private:
  std::string document_;
};

std::vector<std::wstring> FindingsOf(IZOLTDataProvider&& provider, ReportKind kind = ReportKind::PrintVolume) {
  const Report report = MakeReport(kind, provider, true);
  std::vector<std::wstring> texts;
  for (const auto& [text, element] : report.findings) {
    texts.push_back(text + L" " + report.shown.substr(element.begin, element.end - element.begin));
  }
  return texts;
}

TEST(ReportPage, EachGapAtItsElement) {
  EXPECT_EQ(FindingsOf(VirtualZOLTDataProvider(L"Q")).size(), 1u);  // not the universal driver
  EXPECT_EQ(FindingsOf(VirtualZOLTDataProvider(L"Q"), ReportKind::Protection), std::vector<std::wstring>());
  EXPECT_EQ(FindingsOf(DocumentPrinter("<root>\r<\xE9")).at(0), L"Error: this is no well-formed XML document. <root>");
  const std::vector<std::wstring> findings =
      FindingsOf(DocumentPrinter("<root><!-- <no/> --><ZOLT a='>'><Supplies><TonerBox/><Toner><Color>C</Color></Toner>"
                                 "<Toner id=\"2\"><Color>Z</Color></Toner></Supplies></ZOLT></root>"));
  for (const wchar_t* const wanted :
       {L"Error: the model (MDL) is missing. <ZOLT a=\"&gt;\">",
        L"Error, toner 1: the toner's model (ModelID) is missing. <Toner>",
        L"Error, toner 2: the colour (Color) is none of C, M, Y and K. <Toner id=\"2\">"}) {
    EXPECT_EQ(std::ranges::count(findings, wanted), 1) << testing::PrintToString(wanted);
  }
}

TEST(ReportPage, ColoursWhateverItIsGiven) {
  const wchar_t* const documents[][2] = {// each span in brackets behind its letter
                                         {L"<?xml?>a<b/>c</d>", L"T[<?xml?>]aT[<b/>]cT[</d>]"},
                                         {L"<a b=\"1>2\" c='\"'>t", L"T[<a] A[b=\"1>2\" c='\"']T[>]t"},
                                         {L"<!-- <a> -->x<![CDATA[<b>]]>", L"C[<!-- <a> -->]x<![CDATA[<b>]]>"},
                                         {L"x<", L"xT[<]"},
                                         {L"<a b=\"", L"T[<a] A[b=\"]"},
                                         {L"<!--", L"C[<!--]"},
                                         {L"< />", L"T[< />]"}};
  for (const auto& [document, wanted] : documents) {
    std::wstring coloured = document;
    const std::vector<Span> spans = ColourXml(document);
    for (auto span = spans.rbegin(); span != spans.rend(); ++span) {
      coloured.insert(span->range.end, L"]");
      coloured.insert(span->range.begin, std::wstring{L"TAC"[static_cast<int>(span->kind)], L'['});
    }
    EXPECT_EQ(coloured, wanted);
  }
}

}  // namespace
}  // namespace zt
