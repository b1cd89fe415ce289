#include <gtest/gtest.h>

#include <algorithm>

#include "IdentityPage.h"
#include "KVFPrinter.h"
#include "ReportPage.h"
#include "SuppliesPage.h"
#include "VirtualZOLTDataProvider.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

// TalkingPrinter tells what its members hold; the rest fails.
struct TalkingPrinter : KVFPrinter {
  explicit TalkingPrinter(std::string_view id) { AdoptDeviceID(id); }
  HResult Open() override { return result; }
  HResult GetDeviceID(std::string& text) override { return text = deviceID_.raw, HResult::Ok; }
  HResult GetExtendedDeviceID(std::string& text) override { return text = "CMD:A,B;", HResult::Ok; }
  HResult GetSupplyLevels(std::vector<SupplyEntry>& supplies) override { return supplies = toners, HResult::Ok; }
  HResult GetPageCounters(std::uint32_t& largest, std::uint32_t& total) override {
    return std::tie(largest, total) = counters, HResult::Ok;
  }
  HResult ReadSerialNumber(std::string& text) override {
    return serialNumber ? (text = *serialNumber, HResult::Ok) : HResult::Fail;
  }
  HResult GetStatusBlock(StatusBlock&) override { return HResult::Fail; }
  HResult GetPortAddress(std::wstring&) override { return HResult::Fail; }
  HResult GetFirmwareVersion(std::string&) override { return HResult::Fail; }
  HResult CollectZOLT(ZOLTInformation&, Codes&) override { return HResult::Fail; }
  HResult CollectPPA(PPAInformation&, Codes&) override { return HResult::Fail; }

  HResult result = HResult::Ok;  // of opening
  std::optional<std::string> serialNumber = "SN7";
  std::pair<std::uint32_t, std::uint32_t> counters;
  std::vector<SupplyEntry> toners;
};

void ExpectRows(const std::vector<Row>& rows, const std::vector<Row>& wanted) {
  for (const Row& one : wanted) {
    EXPECT_TRUE(std::ranges::any_of(rows, [&](const Row& row) {
      return row.label == one.label && row.value == one.value && row.remark.starts_with(one.remark);
    })) << testing::PrintToString(one.label + L" = " + one.value);
  }
}

TEST(IdentityPage, SaysWhatWasReadAndWhyTheRestWasNot) {
  TalkingPrinter printer("MFG:Velnora; MDL:RV-1;CMD:PJL, ZOLT,RDS,EXT,SBXOFF,CI_12,FOO\r;");
  printer.serialNumber = "MPS-MODE";
  ExpectRows(ReadIdentity(printer, {}, {}).rows, {{L"Model", L"", L"A blank stands before the key"},
                                                  {L"Keyword", L" ZOLT", L"Does not count: a blank"},
                                                  {L"Keyword", L"CI_12", L"Country index 12"},
                                                  {L"Keyword", L"FOO ", L"Not used"},
                                                  {L"Keyword", L"B", L"Not used"},  // of the extended one
                                                  {L"Serial number", L"MPS-MODE", L"No serial number: the printer"},
                                                  {L"Installed on", L"", L"Not offered over the network."},
                                                  {L"Product protection", L"off", L"The printer goes on"}});
}

TEST(IdentityPage, SaysWhyThePrinterIsSilent) {
  const std::tuple<PortKind, Reachability, const char*, const wchar_t*> cases[] = {
      {PortKind::TCPIP, Reachability::NoName, nullptr, L"leads to no address"},
      {PortKind::WSD, Reachability::Silent, nullptr, L"switched off"},
      {PortKind::TCPIP, Reachability::Answers, nullptr, L"by SNMP with the community \"c\""},
      {PortKind::TCPIP, Reachability::Silent, "SN", L"tells no device ID"}};
  for (const auto& [kind, reachability, serialNumber, words] : cases) {
    TalkingPrinter printer("");
    printer.result = HResult::Fail;
    printer.serialNumber.reset();
    if (serialNumber) printer.serialNumber = serialNumber;
    const Identity identity = ReadIdentity(printer, {kind, L"A", L"c"}, [r = reachability](auto&) { return r; });
    EXPECT_NE(identity.rows.at(0).remark.find(words), std::wstring::npos) << testing::PrintToString(words);
  }
}

TEST(SuppliesPage, TonersAsGaugesAndCodesInWords) {
  TalkingPrinter printer("");
  printer.toners = {{SupplyKind::Cyan, {{SupplyAttribute::Level, "73"}, {SupplyAttribute::VendorName, "V"}}},
                    {SupplyKind::Black, {{SupplyAttribute::Level, "-3"}}},
                    {SupplyKind::Yellow, {{SupplyAttribute::Level, "170"}}}};
  printer.counters = {0xFFFFFFFE, 12};
  const Supplies supplies = ReadSupplies(printer);
  EXPECT_EQ(supplies.gauges, (std::vector<Gauge>{{TonerColour::Cyan, 73, L"73 %"},
                                                 {TonerColour::Black, {}, L"some left"},
                                                 {TonerColour::Yellow, {}, L"no percentage: 170"}}));
  ExpectRows(supplies.rows, {{L"Cyan, vendor", L"V", L""},
                             {L"Black toner", L"some left", L"The printer's code -3."},
                             {L"Largest counter", L"-2", L"A code"},
                             {L"Supply unit", L"", L"Not offered over the network."}});
}

// DocumentPrinter delivers its report itself.
struct DocumentPrinter : VirtualZOLTDataProvider {
  explicit DocumentPrinter(const char* text) : VirtualZOLTDataProvider(L"Q"), document(text) {}
  bool CollectZOLT(ZOLTInformation& record) override {
    record.SetDocument(document);
    record.SetDocumentMode(true);
    return true;
  }
  const char* document;
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
  // Each span is put in brackets, behind its letter.
  std::wstring coloured = L"<?xml?>a<b/><a b=\"1>2\" c='\"'>t</d><!-- <a> -->x<![CDATA[<b>]]>< /><e f=\"";
  const std::vector<Span> spans = ColourXml(coloured);
  for (auto span = spans.rbegin(); span != spans.rend(); ++span) {
    coloured.insert(span->range.end, L"]");
    coloured.insert(span->range.begin, std::wstring{L"TAC"[static_cast<int>(span->kind)], L'['});
  }
  EXPECT_EQ(coloured,
            L"T[<?xml?>]aT[<b/>]T[<a] A[b=\"1>2\" c='\"']T[>]tT[</d>]C[<!-- <a> -->]x<![CDATA[<b>]]>T[< />]T[<e] "
            L"A[f=\"]");
}

}  // namespace
}  // namespace zt
