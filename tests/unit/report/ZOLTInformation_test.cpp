#include "ZOLTInformation.h"

#include <gtest/gtest.h>

#include "ReportEdits.h"

namespace zt {
namespace {

constexpr char prolog[] = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<root>\n<ZOLT>\n";
constexpr char end[] = "</Supplies>\n</ZOLT>\n</root>\n";
constexpr char blackToner[] =
    "<Toner>\n<Color>K</Color>\n<AverageAreaCoverage>5</AverageAreaCoverage>\n<InstalledDate>2014-03-07</InstalledDate>"
    "\n<Level>100</Level>\n<ModelID>M</ModelID>\n<SerialNumber>T1</SerialNumber>\n<SupplierID>S</SupplierID>\n"
    "<VendorName>V</VendorName>\n</Toner>\n";
constexpr char cyanToner[] = "<Toner>\n<Color>C</Color>\n<Level>0</Level>\n</Toner>\n";
// With one toner that has everything.
const std::string complete =
    std::string(prolog) +
    "<CountryIndex>24</CountryIndex>\n<GeneralSerialNumber>SN1</GeneralSerialNumber>\n<HostVersion>1.2</HostVersion>\n"
    "<IBL>11</IBL>\n<MDL>Model 1</MDL>\n<ProductType>Family</ProductType>\n"
    "<SystemFirmwareVersion>V3</SystemFirmwareVersion>\n<SystemInstalledDate>2014-03-06</SystemInstalledDate>\n"
    "<TTime>22</TTime>\n<SourceType>RQD</SourceType>\n<Count>\n<DevTotalColorCount>30</DevTotalColorCount>\n"
    "<DevTotalMonoCount>12</DevTotalMonoCount>\n</Count>\n<Supplies>\n" +
    blackToner + end;
const std::string colourReport = Edited(complete, end, std::string(cyanToner) + end);

ZOLTInformation ColourRecord() {
  ZOLTInformation record;
  record.SetModelName("Model 1");
  record.SetProductType("Family");
  record.SetSerialNumber("SN1");
  record.SetFirmwareVersion("V3");
  record.SetInstalledDate("2014-03-06");
  record.SetHostVersion("1.2");
  record.SetIBL("11");
  record.SetTTime("22");
  record.SetCountryIndex("24");
  record.SetFromUniversalDriver(true);
  record.SetTotalMonoCount(12);
  record.SetTotalColorCount(30);
  TonerRecord black(TonerColour::Black);
  black.SetVendorName("V");
  black.SetModelID("M");
  black.SetSupplierID("S");
  black.SetSerialNumber("T1");
  black.SetInstalledDate("2014-03-07");
  black.SetAverageAreaCoverage(5);
  black.SetLevel(100);
  record.AddToner(black);
  TonerRecord cyan(TonerColour::Cyan);
  cyan.SetLevel(0);
  record.AddToner(cyan);
  return record;
}

TEST(ZOLTInformationTest, BuildsTheDocument) {
  EXPECT_EQ(ColourRecord().ToText(), colourReport);
  ZOLTInformation bare;
  EXPECT_EQ(bare.ToText(), std::string(prolog) + "<Count>\n</Count>\n<Supplies>\n" + end);

  // Texts stand there as they are; what a counter or a level cannot be is empty; a toner of unknown colour stays open.
  bare.SetModelName("");
  bare.SetProductType("<&");
  bare.SetTotalMonoCount(-1);
  bare.SetTotalColorCount(0);
  for (const std::uint32_t colour : {0u, 5u, 4294967295u, 3u}) {
    TonerRecord toner(TonerColour{colour});
    toner.SetLevel(101);
    bare.AddToner(toner);
  }
  EXPECT_EQ(bare.ToText(), std::string(prolog) +
                               "<MDL></MDL>\n<ProductType><&</ProductType>\n<Count>\n"
                               "<DevTotalColorCount>0</DevTotalColorCount>\n<DevTotalMonoCount></DevTotalMonoCount>\n"
                               "</Count>\n<Supplies>\n<Toner>\n<Toner>\n<Toner>\n"
                               "<Toner>\n<Color>Y</Color>\n<Level></Level>\n</Toner>\n" +
                               end);
}

TEST(ZOLTInformationTest, Validates) {
  constexpr char kNoToner[] =
      "/warning:no level or Not Support/warning:no averageareacoverage or Not Support/warning:no vendorname"
      "/error:no modelid/warning:no supplierid/warnig:no serial number/warning:no install date";
  constexpr char kNoHead[] =
      "/error:no mdl/error:no producttype/error:no serial number/error:no fwver/warning:no systeminstalleddate"
      "/error:no mono count/warning:no color count or Mono model";
  const std::string secondToner = std::string("/error:invalid color") + kNoToner;
  const std::string noReport = std::string(kNoHead) + "/error:no supplies";  // what follows them is not looked at
  const ReportEdit edits[] = {
      {"", "", ""},
      {"Model 1", "", "/error:no mdl"},
      {"<MDL>Model 1</MDL>", "", "/error:no mdl"},
      {"Model 1", "a&amp;b&#38;", ""},
      {"Model 1", "a&b", "error:invalid xml data"},
      {"Model 1", "a<b", "error:invalid xml data"},
      {">K<", "><", "/error:no color info"},
      {">K<", ">K <", "/error:invalid color"},
      {"Toner>", "Tonner>", "/error:no toner"},
      {"ZOLT>", "Zolt>", noReport},
      {"</Supplies>", "<Toner><Color>X</Color></Toner></Supplies>", secondToner},
      {"</Toner>", "", "error:invalid xml data"},  // as a toner of unknown colour leaves it
  };
  ExpectFindings<ZOLTInformation>(complete, edits);

  Codes codes;
  codes.Add("/earlier");
  EXPECT_FALSE(ZOLTInformation::ValidateXml(std::string(prolog) + "<Supplies><Toner/>" + end, codes));
  EXPECT_EQ(codes.Text(), std::string("/earlier") + kNoHead + "/error:no color info" + kNoToner +
                              "/info:is not RQD/error:no CRUM - IBL info/error:no CRUM - TTime info"
                              "/warning:no CountryIndex");
  EXPECT_TRUE(ZOLTInformation::ValidateXml(complete, codes));
  EXPECT_FALSE(ZOLTInformation::ValidateXml("", codes));
  EXPECT_EQ(codes.Text(), "error:invalid xml data");
}

TEST(ZOLTInformationTest, AmendsTheDeviceDocument) {
  const std::string model = "        <MDL>New</MDL>\n";
  const std::string serial = "        <GeneralSerialNumber>SN2</GeneralSerialNumber>\n";
  struct Row {
    std::string inside;   // of ZOLT
    std::string amended;  // lines inside of ZOLT
    bool universal = false;
  };
  const Row rows[] = {
      {"<A>x</A>", "        <A>x</A>\n" + model + serial},
      {"<A/>", "        <A/>\n        <SourceType>RQD</SourceType>\n" + model + serial, true},
      {"<GeneralSerialNumber>SN2</GeneralSerialNumber><MDL>Old</MDL><B/>", serial + model + "        <B/>\n"},
      {"<MDL/>", model + serial},
      {"<MDL><!-- c -->Old<b/></MDL>", model + serial},
  };
  ZOLTInformation record;
  record.SetDocumentMode(true);
  record.SetModelName("New");
  record.SetSerialNumber("SN2");
  for (const Row& row : rows) {
    record.SetFromUniversalDriver(row.universal);
    record.SetDocument("<root><ZOLT>" + row.inside + "</ZOLT></root>");
    EXPECT_EQ(record.ToText(), "<root>\n    <ZOLT>\n" + row.amended + "    </ZOLT>\n</root>\n") << row.inside;
  }
  for (const char* unchanged :
       {"", "<root><ZOLT>", "<root><Zolt/></root>", "no xml at all", "<root><ZOLT><A>1 &lt; 2 & 3</A></ZOLT></root>"}) {
    record.SetDocument(std::string(unchanged));
    EXPECT_EQ(record.ToText(), unchanged);
  }
  record.SetModelName("");
  record.SetSerialNumber("a&b");
  record.SetDocument(std::string("<root><ZOLT/></root>"));
  EXPECT_EQ(record.ToText(),
            "<root>\n    <ZOLT>\n        <GeneralSerialNumber>a&amp;b</GeneralSerialNumber>\n    </ZOLT>\n</root>\n");
}

// Indented, one mebibyte of small elements becomes a hundred.
TEST(ZOLTInformationTest, AmendsUpToFourMebibytes) {
  const auto report = [](const std::string& inside) { return "<root><ZOLT>" + inside + "</ZOLT></root>"; };
  ZOLTInformation record;
  record.SetDocumentMode(true);
  record.SetDocument(report("<A>x</A>"));
  const std::size_t longest = 4 * 1024 * 1024 - (record.ToText().size() - 1);
  std::string deep;
  for (int depth = 0; depth < 90; ++depth) deep += "<a>";
  for (int i = 0; i < 250000; ++i) deep += "<a/>";
  for (int depth = 0; depth < 90; ++depth) deep += "</a>";
  const std::pair<std::string, bool> rows[] = {
      {"<A>" + std::string(longest, 'x') + "</A>", true},
      {"<A>" + std::string(longest + 1, 'x') + "</A>", false},
      {deep, false},
  };
  for (const auto& [inside, amended] : rows) {
    record.SetDocument(report(inside));
    const std::string text = record.ToText();
    EXPECT_EQ(text != record.Document().Text(), amended) << text.size();
    EXPECT_LE(text.size(), 4u * 1024 * 1024);
  }
}

TEST(ZOLTInformationTest, ReadsWhatItHasWritten) {
  ZOLTInformation record;
  Codes codes;
  EXPECT_TRUE(record.ReadXml(colourReport, codes));
  EXPECT_EQ(codes.Text(),
            "/no taac/no tvendorname/no tsupplid/no tmodelid/no tlevel/no tinstdate");  // of the cyan toner
  const ElementValues device = {
      {"ProductType", "Family"}, {"SystemFirmwareVersion", "V3"}, {"SystemInstalledDate", "2014-03-06"}};
  EXPECT_EQ(record.DeviceValues(), device);
  ZOLTInformation counts;
  EXPECT_TRUE(counts.ReadCountsAndSupplies(colourReport, codes));
  EXPECT_TRUE(counts.DeviceValues().empty());

  const ZOLTInformation written = ColourRecord();
  for (const ZOLTInformation* read : {&record, &counts}) {
    EXPECT_EQ(read->CounterValues(), written.CounterValues());
    ASSERT_EQ(read->Toners().size(), 2u);
    for (std::size_t toner : {0u, 1u}) {
      EXPECT_EQ(read->Toners()[toner].Colour(), written.Toners()[toner].Colour());
      EXPECT_EQ(read->Toners()[toner].Values(), written.Toners()[toner].Values());
    }
  }
}

TEST(ZOLTInformationTest, ReportsWhatItCannotRead) {
  const auto toner = [](const std::string& own) {
    return "<root><ZOLT><Count><DevTotalMonoCount>-5</DevTotalMonoCount>"
           "<DevTotalColorCount>99999999999</DevTotalColorCount></Count><Supplies><Toner>" +
           own +
           "<VendorName>V</VendorName><SupplierID>S</SupplierID><ModelID>M</ModelID><SerialNumber>N</SerialNumber>"
           "<InstalledDate>D</InstalledDate></Toner></Supplies></ZOLT></root>";
  };
  const auto level = [&](const std::string& text, const std::string& coverage = "4294967295") {
    return toner("<Color>Y</Color><AverageAreaCoverage>" + coverage + "</AverageAreaCoverage><Level>" + text +
                 "</Level>");
  };
  struct Row {
    std::string document;
    std::string_view codes;
    std::string values;  // coverage and level of the first toner, "-" for one that is not set
  };
  const Row rows[] = {
      {"<root>", "/xml error", ""},
      {"<root><ZOLT><Count/><A>1 &lt; 2 & 3</A></ZOLT></root>", "/xml error", ""},
      {"<root/>", "/no ZOLT el/no Count el", ""},
      {"<root><ZOLT><Count/></ZOLT></root>", "", ""},
      {toner("<Color></Color>"), "/no tcolor", ""},
      {toner("<Color>y</Color>"), "/invalid tcolor", ""},
      {toner("<Color>Y</Color><Level/>"), "/no tlevel/no taac", "- -"},
      {level("42abc"), "", "4294967295 42"},
      {level("Not Support", "Not Support"), "", "- -"},
      // What a level cannot be becomes empty.
      {level("101"), "", "4294967295 "},
      {level("-3"), "", "4294967295 "},
  };
  for (const Row& row : rows) {
    ZOLTInformation record;
    Codes codes;
    // A toner with gaps does not spoil the report; a document without counters is none.
    const bool isReport = row.codes != "/xml error" && !row.codes.ends_with("/no Count el");
    EXPECT_EQ(record.ReadXml(row.document, codes), isReport) << row.document;
    EXPECT_EQ(codes.Text(), row.codes) << row.document;
    if (row.values.empty()) {
      EXPECT_TRUE(record.Toners().empty()) << row.document;
      continue;
    }
    const ElementValues& values = record.Toners().at(0).Values();
    const auto valueOf = [&](const char* name) { return values.contains(name) ? values.find(name)->second : "-"; };
    EXPECT_EQ(valueOf("AverageAreaCoverage") + " " + valueOf("Level"), row.values) << row.document;
    EXPECT_EQ(record.CounterValues(), (ElementValues{{"DevTotalColorCount", "2147483647"}, {"DevTotalMonoCount", ""}}));
  }
}

}  // namespace
}  // namespace zt
