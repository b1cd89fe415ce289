#include "PPAInformation.h"

#include <gtest/gtest.h>

#include "ReportEdits.h"

namespace zt {
namespace {

constexpr char report[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<root>\n<ZOLT>\n<CountryIndex>52</CountryIndex>\n"
    "<CurrentVersion>2</CurrentVersion>\n<FormatType>F</FormatType>\n<GeneralSerialNumber>SN1</GeneralSerialNumber>\n"
    "<HostVersion>1.2</HostVersion>\n<MDL>Model 1</MDL>\n<SBX>1</SBX>\n"
    "<SystemInstalledDate>2014-03-06</SystemInstalledDate>\n<Supplies>\n<Toner>\n<Color>M</Color>\n"
    "<Capacity>9</Capacity>\n<SerialNumber>T1</SerialNumber>\n<TargetDot>8</TargetDot>\n"
    "<UsedDotPercent>7</UsedDotPercent>\n</Toner>\n</Supplies>\n<ZOLTAgree>1</ZOLTAgree>\n</ZOLT>\n</root>\n";

PPAInformation Record() {
  PPAInformation record;
  record.SetModelName("Model 1");
  record.SetSerialNumber("SN1");
  record.SetInstalledDate("2014-03-06");
  record.SetCurrentVersion("2");
  record.SetSBX("1");
  record.SetFormatType("F");
  record.SetCountryIndex("52");
  record.SetHostVersion("1.2");
  record.SetAgreement(true);
  TonerRecord toner(TonerColour::Magenta);
  toner.SetUsedDotPercent("7");
  toner.SetTargetDot("8");
  toner.SetCapacity("9");
  toner.SetSerialNumber("T1");
  record.AddToner(toner);
  return record;
}

TEST(PPAInformationTest, BuildsTheDocument) {
  EXPECT_EQ(Record().ToText(), report);
  PPAInformation bare;
  bare.AddToner(TonerRecord(TonerColour{5}));
  EXPECT_EQ(bare.ToText(),
            "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<root>\n<ZOLT>\n<Supplies>\n<Toner>\n</Supplies>\n"
            "<ZOLTAgree>0</ZOLTAgree>\n</ZOLT>\n</root>\n");
}

TEST(PPAInformationTest, Validates) {
  constexpr char kNoHead[] =
      "/error:no mdl/error:no serial number/warning:no systeminstalleddate/warning:no XMLinterfaceversion"
      "/warning:no XMLformattype";
  const std::string noReport = std::string(kNoHead) + "/error:no supplies";
  const ReportEdit edits[] = {
      {"", "", ""},
      {"ZOLT>", "Other>", noReport},
      {"</Supplies>", "<Toner/></Supplies>",
       "/error:no color info/warning:no tonerUsedotpercent/warnig:no serial number/warning:no tonerCapacity"
       "/warning:no tonerTargetdot"},
      // Not looked at.
      {"SBX", "Other", ""},
      {"CountryIndex", "Other", ""},
      {"ZOLTAgree", "Other", ""},
  };
  ExpectFindings<PPAInformation>(report, edits);
}

TEST(PPAInformationTest, ReadsInTwoSteps) {
  PPAInformation record;
  Codes codes;
  EXPECT_TRUE(record.ReadXml(std::string(report), codes));
  const ElementValues device = {{"CurrentVersion", "2"}, {"FormatType", "F"}, {"SystemInstalledDate", "2014-03-06"}};
  EXPECT_EQ(record.DeviceValues(), device);
  EXPECT_TRUE(record.Toners().empty());
  EXPECT_TRUE(record.ReadCountsAndSupplies(std::string(report), codes));
  ASSERT_EQ(record.Toners().size(), 1u);
  EXPECT_EQ(record.Toners()[0].Colour(), TonerColour::Magenta);
  EXPECT_EQ(record.Toners()[0].Values(), Record().Toners()[0].Values());
}

TEST(PPAInformationTest, ReportsWhatItCannotRead) {
  struct Row {
    std::string document;
    std::string_view device;
    std::string_view toners;
  };
  const Row rows[] = {
      {"", "/xml error", "/xml error"},
      {"<root/>", "/no ZOLT el/no Count el", "/no ZOLT el"},
      {"<root><ZOLT/></root>", "/no Count el", ""},
      {"<root><ZOLT><Count/></ZOLT></root>", "", ""},
      {Edited(report, "M</Color>", "X</Color>"), "", "/invalid tcolor"},
      {"<?xml?><root><ZOLT><Supplies><Toner><Color>M</Color></Toner></Supplies></ZOLT></root>", "",
       "/no tlevel/no UsedDotPercent/no Capacity/no TargetDot"},
  };
  for (const Row& row : rows) {
    PPAInformation record;
    Codes device;
    Codes toners;
    EXPECT_EQ(record.ReadXml(row.document, device), row.device.empty()) << row.document;
    EXPECT_EQ(record.ReadCountsAndSupplies(row.document, toners), row.toners.empty()) << row.document;
    EXPECT_EQ(device.Text(), row.device) << row.document;
    EXPECT_EQ(toners.Text(), row.toners) << row.document;
    const bool hasToner = row.document.starts_with("<?xml") && !row.toners.ends_with("tcolor");
    EXPECT_EQ(record.Toners().size(), hasToner ? 1u : 0u) << row.document;
  }
}

}  // namespace
}  // namespace zt
