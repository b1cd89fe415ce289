#include "ZOLTInformation.h"

#include <gtest/gtest.h>

#include "Codes.h"

namespace zt {
namespace {

constexpr char prolog[] = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<root>\n<ZOLT>\n";
constexpr char end[] = "</Supplies>\n</ZOLT>\n</root>\n";
// With one toner that has everything.
const std::string complete =
    std::string(prolog) +
    "<CountryIndex>24</CountryIndex>\n<GeneralSerialNumber>SN1</GeneralSerialNumber>\n<HostVersion>1.2</HostVersion>\n"
    "<IBL>11</IBL>\n<MDL>Model 1</MDL>\n<ProductType>Family</ProductType>\n"
    "<SystemFirmwareVersion>V3</SystemFirmwareVersion>\n<SystemInstalledDate>2014-03-06</SystemInstalledDate>\n"
    "<TTime>22</TTime>\n<SourceType>RQD</SourceType>\n<Count>\n<DevTotalColorCount>30</DevTotalColorCount>\n"
    "<DevTotalMonoCount>12</DevTotalMonoCount>\n</Count>\n<Supplies>\n<Toner>\n<Color>K</Color>\n"
    "<AverageAreaCoverage>5</AverageAreaCoverage>\n<InstalledDate>2014-03-07</InstalledDate>\n<Level>100</Level>\n"
    "<ModelID>M</ModelID>\n<SerialNumber>T1</SerialNumber>\n<SupplierID>S</SupplierID>\n<VendorName>V</VendorName>\n"
    "</Toner>\n" +
    end;

TEST(ZOLTInformationTest, WritesWhatItHasRead) {
  ZOLTInformation record;
  Codes codes;
  EXPECT_TRUE(record.ReadXml(complete, codes));
  EXPECT_EQ(codes.Text(), "");
  // What the printer says elsewhere.
  record.SetModelName("Model 1");
  record.SetSerialNumber("SN1");
  record.SetHostVersion("1.2");
  record.SetIBL("11");
  record.SetTTime("22");
  record.SetCountryIndex("24");
  record.SetFromUniversalDriver(true);
  EXPECT_EQ(record.ToText(), complete);

  ZOLTInformation counts;
  EXPECT_TRUE(counts.ReadCountsAndSupplies(complete, codes));
  EXPECT_EQ(counts.ToText(), prolog + complete.substr(complete.find("<Count>")));
}

TEST(ZOLTInformationTest, WritesWhatIsOdd) {
  ZOLTInformation record;
  EXPECT_EQ(record.ToText(), std::string(prolog) + "<Count>\n</Count>\n<Supplies>\n" + end);
  // Texts stand there as they are; what a counter or a level cannot be is empty; a toner of unknown colour stays open.
  record.SetProductType("<&");
  record.SetTotalMonoCount(-1);
  record.SetTotalColorCount(0);
  for (const std::uint32_t colour : {0u, 5u, 3u}) {
    TonerRecord toner(TonerColour{colour});
    toner.SetLevel(101);
    record.AddToner(toner);
  }
  EXPECT_EQ(record.ToText(), std::string(prolog) +
                                 "<ProductType><&</ProductType>\n<Count>\n<DevTotalColorCount>0</DevTotalColorCount>\n"
                                 "<DevTotalMonoCount></DevTotalMonoCount>\n</Count>\n<Supplies>\n<Toner>\n<Toner>\n"
                                 "<Toner>\n<Color>Y</Color>\n<Level></Level>\n</Toner>\n" +
                                 end);
}

TEST(ZOLTInformationTest, Validates) {
  const std::string noHead =
      "/error:no mdl/error:no producttype/error:no serial number/error:no fwver/warning:no systeminstalleddate"
      "/error:no mono count/warning:no color count or Mono model";
  const std::string noToner =
      "/warning:no level or Not Support/warning:no averageareacoverage or Not Support/warning:no vendorname"
      "/error:no modelid/warning:no supplierid/warnig:no serial number/warning:no install date";
  const std::string noEnd =
      "/info:is not RQD/error:no CRUM - IBL info/error:no CRUM - TTime info/warning:no CountryIndex";
  const struct {
    std::string document;
    std::string findings;
  } rows[] = {
      {complete, ""},
      {"<root><ZOLT/></root>", noHead + "/error:no supplies"},  // what follows them is not looked at
      {"<root><ZOLT><Supplies/></ZOLT></root>", noHead + "/error:no toner" + noEnd},
      {"<root><ZOLT><Supplies><Toner/><Toner><Color>K </Color></Toner></Supplies></ZOLT></root>",
       noHead + "/error:no color info" + noToner + "/error:invalid color" + noToner + noEnd},
      {"<root><ZOLT><Supplies><Toner></Supplies></ZOLT></root>", "error:invalid xml data"},
      {"<root><ZOLT><MDL>a & b</MDL></ZOLT></root>", "error:invalid xml data"},
  };
  Codes codes;
  for (const auto& row : rows) {
    codes = Codes();
    EXPECT_EQ(ZOLTInformation::ValidateXml(row.document, codes), row.findings.empty());
    EXPECT_EQ(codes.Text(), row.findings);
  }
  EXPECT_TRUE(ZOLTInformation::ValidateXml(complete, codes));
  EXPECT_FALSE(ZOLTInformation::ValidateXml("<root><ZOLT/></root>", codes));
  EXPECT_EQ(codes.Text(), "error:invalid xml data" + noHead + "/error:no supplies");
  EXPECT_FALSE(ZOLTInformation::ValidateXml("", codes));
  EXPECT_EQ(codes.Text(), "error:invalid xml data");
}

TEST(ZOLTInformationTest, AmendsTheDeviceDocument) {
  const std::string model = "        <MDL>New</MDL>\n";
  const std::string serial = "        <GeneralSerialNumber>a&amp;b</GeneralSerialNumber>\n";
  const struct {
    std::string inside;   // of ZOLT
    std::string amended;  // lines inside of ZOLT
    bool universal = false;
  } rows[] = {
      {"<A/>", "        <A/>\n        <SourceType>RQD</SourceType>\n" + model + serial, true},
      {"<GeneralSerialNumber>a&amp;b</GeneralSerialNumber><MDL>Old</MDL><B/>", serial + model + "        <B/>\n"},
      {"<MDL><!-- c -->Old<b/></MDL>", model + serial},
  };
  ZOLTInformation record;
  record.SetDocumentMode(true);
  record.SetModelName("New");
  record.SetSerialNumber("a&b");
  for (const auto& row : rows) {
    record.SetFromUniversalDriver(row.universal);
    record.SetDocument("<root><ZOLT>" + row.inside + "</ZOLT></root>");
    EXPECT_EQ(record.ToText(), "<root>\n    <ZOLT>\n" + row.amended + "    </ZOLT>\n</root>\n");
  }
  for (const char* unchanged : {"", "<root><Zolt/></root>", "<root><ZOLT><A>1 & 3</A></ZOLT></root>"}) {
    record.SetDocument(unchanged);
    EXPECT_EQ(record.ToText(), unchanged);
  }
  record.SetModelName("");
  record.SetDocument("<root><ZOLT/></root>");
  EXPECT_EQ(record.ToText(), "<root>\n    <ZOLT>\n" + serial + "    </ZOLT>\n</root>\n");
}

// Indented, one mebibyte of small elements becomes a hundred.
TEST(ZOLTInformationTest, AmendsUpToFourMebibytes) {
  const auto report = [](std::size_t length) {
    return "<root><ZOLT><A>" + std::string(length, 'x') + "</A></ZOLT></root>";
  };
  ZOLTInformation record;
  record.SetDocumentMode(true);
  record.SetDocument(report(1));
  const std::size_t longest = 4 * 1024 * 1024 - record.ToText().size() + 1;
  record.SetDocument(report(longest));
  EXPECT_EQ(record.ToText().size(), 4u * 1024 * 1024);
  record.SetDocument(report(longest + 1));
  EXPECT_EQ(record.ToText(), report(longest + 1));
}

TEST(ZOLTInformationTest, ReportsWhatItCannotRead) {
  const auto toner = [](const std::string& text) {
    return "<root><ZOLT><Count><DevTotalMonoCount>-5</DevTotalMonoCount><DevTotalColorCount>99999999999"
           "</DevTotalColorCount></Count><Supplies><Toner>" +
           text + "</Toner></Supplies></ZOLT></root>";
  };
  const auto level = [&](const std::string& text) {
    return toner("<Color>Y</Color><AverageAreaCoverage>" + text + "</AverageAreaCoverage><Level>" + text + "</Level>");
  };
  const std::string noTexts = "/no tvendorname/no tsupplid/no tmodelid/no tlevel/no tinstdate";
  const struct {
    std::string document;
    std::string codes;
    std::vector<ElementValues> toners = {};
  } rows[] = {
      {"<root>", "/xml error"},
      {"<root/>", "/no ZOLT el/no Count el"},
      {toner("<Color></Color>"), "/no tcolor"},
      {toner("<Color>y</Color>"), "/invalid tcolor"},
      {toner("<Color>Y</Color><Level/>"), "/no tlevel/no taac" + noTexts, {{}}},
      {level("Not Support"), noTexts, {{}}},
      {level("42abc"), noTexts, {{{"AverageAreaCoverage", "42"}, {"Level", "42"}}}},
      // What a level cannot be becomes empty.
      {level("101"), noTexts, {{{"AverageAreaCoverage", "101"}, {"Level", ""}}}},
      {level("-3"), noTexts, {{{"AverageAreaCoverage", "4294967293"}, {"Level", ""}}}},
  };
  for (const auto& row : rows) {
    ZOLTInformation record;
    Codes codes;
    // A toner with gaps does not spoil the report; a document without counters is none.
    const bool hasCounts = row.document.find("<Count>") != std::string::npos;
    EXPECT_EQ(record.ReadXml(row.document, codes), hasCounts);
    EXPECT_EQ(codes.Text(), row.codes);
    std::vector<ElementValues> toners;
    for (const TonerRecord& read : record.Toners()) toners.push_back(read.Values());
    EXPECT_EQ(toners, row.toners) << row.document;
    const ElementValues odd = {{"DevTotalColorCount", "2147483647"}, {"DevTotalMonoCount", ""}};
    EXPECT_EQ(record.CounterValues(), hasCounts ? odd : ElementValues());
  }
}

}  // namespace
}  // namespace zt
