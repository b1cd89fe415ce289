#include "ZOLTInformation.h"

#include <gtest/gtest.h>

#include "Xml.h"

namespace zt {
namespace {

constexpr char colourReport[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n"
    "<root>\n"
    "<ZOLT>\n"
    "<CountryIndex>24</CountryIndex>\n"
    "<GeneralSerialNumber>SN1</GeneralSerialNumber>\n"
    "<HostVersion>1.2</HostVersion>\n"
    "<IBL>11</IBL>\n"
    "<MDL>Model 1</MDL>\n"
    "<ProductType>Family</ProductType>\n"
    "<SystemFirmwareVersion>V3</SystemFirmwareVersion>\n"
    "<SystemInstalledDate>2014-03-06</SystemInstalledDate>\n"
    "<TTime>22</TTime>\n"
    "<SourceType>RQD</SourceType>\n"
    "<Count>\n"
    "<DevTotalColorCount>30</DevTotalColorCount>\n"
    "<DevTotalMonoCount>12</DevTotalMonoCount>\n"
    "</Count>\n"
    "<Supplies>\n"
    "<Toner>\n"
    "<Color>K</Color>\n"
    "<AverageAreaCoverage>5</AverageAreaCoverage>\n"
    "<InstalledDate>2014-03-07</InstalledDate>\n"
    "<Level>100</Level>\n"
    "<ModelID>M</ModelID>\n"
    "<SerialNumber>T1</SerialNumber>\n"
    "<SupplierID>S</SupplierID>\n"
    "<VendorName>V</VendorName>\n"
    "</Toner>\n"
    "<Toner>\n"
    "<Color>C</Color>\n"
    "<Level>0</Level>\n"
    "</Toner>\n"
    "</Supplies>\n"
    "</ZOLT>\n"
    "</root>\n";

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
  TonerRecord black(4);
  black.SetVendorName("V");
  black.SetModelID("M");
  black.SetSupplierID("S");
  black.SetSerialNumber("T1");
  black.SetInstalledDate("2014-03-07");
  black.SetAverageAreaCoverage(5);
  black.SetLevel(100);
  record.AddToner(black);
  TonerRecord cyan(1);
  cyan.SetLevel(0);
  record.AddToner(cyan);
  return record;
}

// The report with every occurrence of `from` replaced.
std::string Edited(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

std::string Messages(std::string_view document) {
  std::string messages;
  const bool valid = ZOLTInformation::ValidateXml(document, messages);
  EXPECT_EQ(valid, messages.empty());
  return messages;
}

TEST(ZOLTInformationTest, BuildsTheDocument) {
  EXPECT_EQ(ColourRecord().ToText(), colourReport);

  ZOLTInformation empty;
  constexpr std::string_view frame = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<root>\n<ZOLT>\n";
  constexpr std::string_view end = "<Supplies>\n</Supplies>\n</ZOLT>\n</root>\n";
  EXPECT_EQ(empty.ToText(), std::string(frame) + "<Count>\n</Count>\n" + std::string(end));

  empty.SetModelName("");
  empty.SetProductType("<&");
  empty.SetTotalMonoCount(-1);
  empty.SetTotalColorCount(0);
  EXPECT_EQ(empty.ToText(), std::string(frame) + "<MDL></MDL>\n<ProductType><&</ProductType>\n<Count>\n" +
                                "<DevTotalColorCount>0</DevTotalColorCount>\n<DevTotalMonoCount></DevTotalMonoCount>\n"
                                "</Count>\n" +
                                std::string(end));
}

TEST(ZOLTInformationTest, LeavesATonerOfUnknownColourOpen) {
  for (const std::int32_t colour : {0, 5, -1}) {
    ZOLTInformation record;
    TonerRecord toner(colour);
    toner.SetLevel(101);
    record.AddToner(toner);
    toner = TonerRecord(3);
    toner.SetLevel(101);
    record.AddToner(toner);
    const std::string text = record.ToText();
    EXPECT_NE(text.find("<Toner>\n<Toner>\n<Color>Y</Color>\n<Level></Level>\n</Toner>\n</Supplies>"),
              std::string::npos);
    EXPECT_EQ(Messages(text), "error:invalid xml data");
  }
}

TEST(ZOLTInformationTest, ValidatesEachElement) {
  const std::string complete = Edited(colourReport, "<Toner>\n<Color>C</Color>\n<Level>0</Level>\n</Toner>\n", "");
  struct Row {
    std::string_view from;
    std::string_view to;
    std::string_view messages;
  };
  constexpr Row rows[] = {
      {"", "", ""},
      {"<MDL>Model 1</MDL>", "", "/error:no mdl"},
      {"<MDL>Model 1</MDL>", "<MDL/>", "/error:no mdl"},
      {"<MDL>Model 1</MDL>", "<MDL> </MDL>", "/error:no mdl"},
      {"<MDL>Model 1</MDL>", "<MDL><!-- x -->Model 1</MDL>", "/error:no mdl"},  // the first child is no text
      {"<MDL>Model 1</MDL>", "<MDL><a>Model 1</a></MDL>", "/error:no mdl"},
      {"<MDL>Model 1</MDL>", "<MDL>a&amp;b&#38;</MDL>", ""},
      {"<MDL>Model 1</MDL>", "<MDL>a&b</MDL>", "error:invalid xml data"},
      {"<MDL>Model 1</MDL>", "<MDL>a<b</MDL>", "error:invalid xml data"},
      {"Family", "", "/error:no producttype"},
      {"SN1", "", "/error:no serial number"},
      {"V3", "", "/error:no fwver"},
      {"2014-03-06", "", "/warning:no systeminstalleddate"},
      {"12", "", "/error:no mono count"},
      {"30", "", "/warning:no color count or Mono model"},
      {">K<", "><", "/error:no color info"},
      {">K<", ">k<", "/error:invalid color"},
      {">K<", ">K <", "/error:invalid color"},
      {">K<", ">KK<", "/error:invalid color"},
      {">100<", "><", "/warning:no level or Not Support"},
      {">5<", "><", "/warning:no averageareacoverage or Not Support"},
      {">V<", "><", "/warning:no vendorname"},
      {">M<", "><", "/error:no modelid"},
      {">S<", "><", "/warning:no supplierid"},
      {"T1", "", "/warnig:no serial number"},
      {"2014-03-07", "", "/warning:no install date"},
      {"RQD", "", "/info:is not RQD"},
      {">11<", "><", "/error:no CRUM - IBL info"},
      {">22<", "><", "/error:no CRUM - TTime info"},
      {">24<", "><", "/warning:no CountryIndex"},
      {"<Toner>", "<Other><Toner>", "error:invalid xml data"},
      {"Count>", "Kount>", "/error:no mono count/warning:no color count or Mono model"},
      {"Toner>", "Tonner>", "/error:no toner"},
      // Without supplies what follows them is not looked at.
      {"SourceType", "Other", "/info:is not RQD"},
      {"Supplies>", "Supply>", "/error:no supplies"},
      {"ZOLT>", "Zolt>",
       "/error:no mdl/error:no producttype/error:no serial number/error:no fwver/warning:no systeminstalleddate"
       "/error:no mono count/warning:no color count or Mono model/error:no supplies"},
      // The second toner is checked after the first.
      {"</Supplies>", "<Toner><Color>X</Color></Toner></Supplies>",
       "/error:invalid color/warning:no level or Not Support/warning:no averageareacoverage or Not Support"
       "/warning:no vendorname/error:no modelid/warning:no supplierid/warnig:no serial number/warning:no install date"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Messages(row.from.empty() ? complete : Edited(complete, row.from, row.to)), row.messages)
        << row.from << " -> " << row.to;
  }

  std::string earlier = "/earlier";
  EXPECT_FALSE(ZOLTInformation::ValidateXml(Edited(complete, "RQD", ""), earlier));
  EXPECT_EQ(earlier, "/earlier/info:is not RQD");
  EXPECT_TRUE(ZOLTInformation::ValidateXml(complete, earlier));
  EXPECT_FALSE(ZOLTInformation::ValidateXml("", earlier));
  EXPECT_EQ(earlier, "error:invalid xml data");
}

TEST(ZOLTInformationTest, AmendsTheDeviceDocument) {
  constexpr std::string_view model = "        <MDL>New</MDL>\n";
  constexpr std::string_view serial = "        <GeneralSerialNumber>SN2</GeneralSerialNumber>\n";
  struct Row {
    std::string_view inside;  // of ZOLT
    std::string amended;      // lines inside of ZOLT
    bool universal = false;
  };
  const Row rows[] = {
      {"<A>x</A>", "        <A>x</A>\n" + std::string(model) + std::string(serial)},
      {"<A/>", "        <A/>\n        <SourceType>RQD</SourceType>\n" + std::string(model) + std::string(serial), true},
      {"<GeneralSerialNumber>SN2</GeneralSerialNumber><MDL>Old</MDL><B/>",
       std::string(serial) + std::string(model) + "        <B/>\n"},
      {"<MDL/>", std::string(model) + std::string(serial)},
      {"<MDL><!-- c -->Old<b/></MDL>", std::string(model) + std::string(serial)},
  };
  ZOLTInformation record;
  record.SetDocumentMode(true);
  record.SetModelName("New");
  record.SetSerialNumber("SN2");
  for (const Row& row : rows) {
    record.SetFromUniversalDriver(row.universal);
    record.SetDeviceDocument("<root><ZOLT>" + std::string(row.inside) + "</ZOLT></root>");
    EXPECT_EQ(record.ToText(), "<root>\n    <ZOLT>\n" + row.amended + "    </ZOLT>\n</root>\n") << row.inside;
  }

  for (const char* unchanged : {"", "<root><ZOLT>", "<root><Zolt/></root>", "no xml at all"}) {
    record.SetDeviceDocument(unchanged);
    EXPECT_EQ(record.ToText(), unchanged);
  }

  record.SetModelName("");
  record.SetSerialNumber("a&b");
  record.SetDeviceDocument("<root><ZOLT/></root>");
  EXPECT_EQ(record.ToText(),
            "<root>\n    <ZOLT>\n        <GeneralSerialNumber>a&amp;b</GeneralSerialNumber>\n    </ZOLT>\n</root>\n");
}

TEST(ZOLTInformationTest, ReadsWhatItHasWritten) {
  const std::string document = Edited(colourReport, "<Color>C</Color>\n",
                                      "<Color>C</Color>\n<AverageAreaCoverage>Not "
                                      "Support</AverageAreaCoverage>\n");
  ZOLTInformation record;
  std::string messages;
  EXPECT_TRUE(record.ReadXml(document, messages));
  EXPECT_EQ(messages, "/no tvendorname/no tsupplid/no tmodelid/no tlevel/no tinstdate");  // of the second toner
  EXPECT_EQ(record.DeviceValues(),
            (ElementValues{
                {"ProductType", "Family"}, {"SystemFirmwareVersion", "V3"}, {"SystemInstalledDate", "2014-03-06"}}));
  const ZOLTInformation written = ColourRecord();
  EXPECT_EQ(record.CounterValues(), written.CounterValues());
  ASSERT_EQ(record.Toners().size(), 2u);
  EXPECT_EQ(record.Toners()[0].Colour(), 4);
  EXPECT_EQ(record.Toners()[0].Values(), written.Toners()[0].Values());
  EXPECT_EQ(record.Toners()[1].Values(), (ElementValues{{"Level", "0"}}));

  ZOLTInformation counts;
  messages.clear();
  EXPECT_TRUE(counts.ReadCountsAndSupplies(document, messages));
  EXPECT_TRUE(counts.DeviceValues().empty());
  EXPECT_EQ(counts.CounterValues(), record.CounterValues());
  EXPECT_EQ(counts.Toners().size(), 2u);
}

TEST(ZOLTInformationTest, ReportsWhatItCannotRead) {
  constexpr std::string_view rest =
      "<VendorName>V</VendorName><SupplierID>S</SupplierID><ModelID>M</ModelID><SerialNumber>N</SerialNumber>"
      "<InstalledDate>D</InstalledDate>";
  struct Row {
    std::string document;
    std::string_view messages;
    std::string_view level = {};  // of the first toner; empty: no toner was read, or without a level
  };
  const auto toner = [&](std::string_view own) {
    return "<root><ZOLT><Count/><Supplies><Toner>" + std::string(own) + std::string(rest) +
           "</Toner></Supplies></ZOLT></root>";
  };
  const Row rows[] = {
      {"", "/xml error"},
      {"<root>", "/xml error"},
      {"<root/>", "/no ZOLT el/no Count el"},
      {"<root><ZOLT/></root>", "/no Count el"},
      {"<root><ZOLT><Count/></ZOLT></root>", ""},
      {toner("<Level>1</Level>"), "/no tcolor"},
      {toner("<Color/><Level>1</Level>"), "/no tcolor"},
      {toner("<Color>y</Color>"), "/invalid tcolor"},
      {toner("<Color>Y</Color>"), "/no tlevel/no taac"},
      {toner("<Color>Y</Color><Level/><AverageAreaCoverage/>"), "/no tlevel/no taac"},
      {toner("<Color>Y</Color><Level>7</Level><AverageAreaCoverage>1</AverageAreaCoverage>"), "", "7"},
      {toner("<Color>Y</Color><Level>42abc</Level><AverageAreaCoverage>1</AverageAreaCoverage>"), "", "42"},
      {toner("<Color>Y</Color><Level>Not Support</Level><AverageAreaCoverage>1</AverageAreaCoverage>"), ""},
  };
  for (const Row& row : rows) {
    ZOLTInformation record;
    std::string messages;
    // A toner with gaps does not spoil the report; a document without counters is none.
    const bool isReport = row.messages != "/xml error" && !row.messages.ends_with("/no Count el");
    EXPECT_EQ(record.ReadXml(row.document, messages), isReport) << row.document;
    EXPECT_EQ(messages, row.messages) << row.document;
    if (row.level.empty()) continue;
    ASSERT_EQ(record.Toners().size(), 1u);
    EXPECT_EQ(record.Toners()[0].Values().at("Level"), row.level);
  }
  // Out of range: what a counter or a level cannot be becomes empty.
  ZOLTInformation record;
  std::string messages;
  EXPECT_TRUE(
      record.ReadXml("<root><ZOLT><Count><DevTotalMonoCount>-5</DevTotalMonoCount>"
                     "<DevTotalColorCount>99999999999</DevTotalColorCount></Count></ZOLT></root>",
                     messages));
  EXPECT_EQ(record.CounterValues(), (ElementValues{{"DevTotalColorCount", "2147483647"}, {"DevTotalMonoCount", ""}}));
  for (const char* level : {"101", "-3", "99999999999"}) {
    ZOLTInformation levels;
    levels.ReadXml(toner("<Color>Y</Color><Level>" + std::string(level) + "</Level>"), messages);
    EXPECT_EQ(levels.Toners().at(0).Values().at("Level"), "") << level;
  }
}

TEST(ZOLTInformationTest, NoPrefixOfADocumentIsADocument) {
  const std::string document = colourReport;
  for (std::size_t length = 0; length + 1 < document.size(); ++length) {
    // The prolog alone parses: it is a document without a root.
    if (length == document.find('\n') || length == document.find('\n') + 1) continue;
    const std::string prefix = document.substr(0, length);
    ZOLTInformation record;
    std::string messages;
    EXPECT_FALSE(record.ReadXml(prefix, messages)) << length;
    EXPECT_EQ(messages, "/xml error");
    EXPECT_TRUE(record.DeviceValues().empty() && record.CounterValues().empty() && record.Toners().empty());
    EXPECT_EQ(Messages(prefix), "error:invalid xml data") << length;
  }
}

}  // namespace
}  // namespace zt
