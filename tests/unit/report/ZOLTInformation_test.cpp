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
  // Texts stand there as they are; a toner of unknown colour stays open.
  ZOLTInformation record;
  record.SetProductType("<&");
  for (const std::uint32_t colour : {0u, 5u, 3u}) record.AddToner(TonerRecord(TonerColour{colour}));
  EXPECT_EQ(record.ToText(), std::string(prolog) +
                                 "<ProductType><&</ProductType>\n<Count>\n</Count>\n<Supplies>\n<Toner>\n<Toner>\n"
                                 "<Toner>\n<Color>Y</Color>\n</Toner>\n" +
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
  for (const auto& row : rows) {
    Codes codes;
    codes.Add("/earlier");
    EXPECT_EQ(ZOLTInformation::ValidateXml(row.document, codes), row.findings.empty());
    EXPECT_EQ(codes.Text(), (row.findings.starts_with("error:") ? "" : "/earlier") + row.findings);
  }
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
  record.SetModelName("");  // changes nothing
  record.SetDocument("<root><ZOLT/></root>");
  EXPECT_EQ(record.ToText(), "<root>\n    <ZOLT>\n" + serial + "    </ZOLT>\n</root>\n");
  for (const char* unchanged : {"", "<root><Zolt/></root>", "<root><ZOLT><A>1 & 3</A></ZOLT></root>"}) {
    record.SetDocument(unchanged);
    EXPECT_EQ(record.ToText(), unchanged);
  }
}

TEST(ZOLTInformationTest, AmendsUpToFourMebibytes) {
  const std::size_t around = std::string_view("<root>\n    <ZOLT>\n        <A></A>\n    </ZOLT>\n</root>\n").size();
  ZOLTInformation record;
  record.SetDocumentMode(true);
  for (const std::size_t size : {4 * 1024 * 1024, 4 * 1024 * 1024 + 1}) {
    const std::string document = "<root><ZOLT><A>" + std::string(size - around, 'x') + "</A></ZOLT></root>";
    record.SetDocument(document);
    EXPECT_EQ(record.ToText().size(), size > 4 * 1024 * 1024 ? document.size() : size);
  }
}

TEST(ZOLTInformationTest, ReportsWhatItCannotRead) {
  const std::string head =
      "<root><ZOLT><Count><DevTotalMonoCount>-5</DevTotalMonoCount><DevTotalColorCount>99999999999"
      "</DevTotalColorCount></Count><Supplies><Toner><Color>";
  const std::string foot = "</Level></Toner></Supplies></ZOLT></root>";
  const auto toner = [&](const std::string& level) {
    return head + "Y</Color><AverageAreaCoverage>" + level + "</AverageAreaCoverage><Level>" + level + foot;
  };
  const std::string noTexts = "/no tvendorname/no tsupplid/no tmodelid/no tlevel/no tinstdate";
  const struct {
    std::string document;
    std::string codes;
    std::vector<ElementValues> toners = {};
  } rows[] = {
      {"<root>", "/xml error"},
      {"<root/>", "/no ZOLT el/no Count el"},
      {head + "</Color><Level>" + foot, "/no tcolor"},
      {head + "y</Color><Level>" + foot, "/invalid tcolor"},
      {toner(""), "/no tlevel/no taac" + noTexts, {{}}},
      {toner("Not Support"), noTexts, {{}}},
      {toner("42abc"), noTexts, {{{"AverageAreaCoverage", "42"}, {"Level", "42"}}}},
      // What a level cannot be becomes empty.
      {toner("101"), noTexts, {{{"AverageAreaCoverage", "101"}, {"Level", ""}}}},
      {toner("-3"), noTexts, {{{"AverageAreaCoverage", "4294967293"}, {"Level", ""}}}},
  };
  const ElementValues counts = {{"DevTotalColorCount", "2147483647"}, {"DevTotalMonoCount", ""}};
  for (const auto& row : rows) {
    ZOLTInformation record;
    Codes codes;
    // A toner with gaps does not spoil the report; a document without counters is none.
    const bool hasCounts = row.document.starts_with(head);
    EXPECT_EQ(record.ReadXml(row.document, codes), hasCounts);
    EXPECT_EQ(record.CounterValues(), hasCounts ? counts : ElementValues());
    EXPECT_EQ(codes.Text(), row.codes);
    std::vector<ElementValues> toners;
    for (const TonerRecord& read : record.Toners()) toners.push_back(read.Values());
    EXPECT_EQ(toners, row.toners) << row.document;
  }
}

}  // namespace
}  // namespace zt
