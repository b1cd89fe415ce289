#include "PPAInformation.h"

#include <gtest/gtest.h>

#include "Codes.h"

namespace zt {
namespace {

const std::string report =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<root>\n<ZOLT>\n<CurrentVersion>2</CurrentVersion>\n"
    "<FormatType>F</FormatType>\n<GeneralSerialNumber>SN1</GeneralSerialNumber>\n<MDL>Model 1</MDL>\n<SBX>1</SBX>\n"
    "<SystemInstalledDate>2014-03-06</SystemInstalledDate>\n<Supplies>\n<Toner>\n<Color>M</Color>\n"
    "<Capacity>9</Capacity>\n<SerialNumber>T1</SerialNumber>\n<TargetDot>8</TargetDot>\n"
    "<UsedDotPercent>7</UsedDotPercent>\n</Toner>\n</Supplies>\n<ZOLTAgree>1</ZOLTAgree>\n</ZOLT>\n</root>\n";

TEST(PPAInformationTest, WritesWhatItHasReadInTwoSteps) {
  PPAInformation record;
  Codes codes;
  EXPECT_TRUE(record.ReadXml(report, codes));
  EXPECT_TRUE(record.Toners().empty());
  EXPECT_TRUE(record.ReadCountsAndSupplies(report, codes));
  record.SetModelName("Model 1");
  record.SetSerialNumber("SN1");
  record.SetSBX("1");
  record.SetAgreement(true);
  EXPECT_EQ(record.ToText(), report);
  record.SetAgreement(false);
  EXPECT_TRUE(record.ToText().ends_with("</Supplies>\n<ZOLTAgree>0</ZOLTAgree>\n</ZOLT>\n</root>\n"));
}

TEST(PPAInformationTest, Validates) {
  Codes codes;
  EXPECT_TRUE(PPAInformation::ValidateXml(report, codes));
  EXPECT_FALSE(PPAInformation::ValidateXml("<root><ZOLT><Supplies><Toner/></Supplies></ZOLT></root>", codes));
  EXPECT_EQ(codes.Text(),
            "/error:no mdl/error:no serial number/warning:no systeminstalleddate/warning:no XMLinterfaceversion"
            "/warning:no XMLformattype/error:no color info/warning:no tonerUsedotpercent/warnig:no serial number"
            "/warning:no tonerCapacity/warning:no tonerTargetdot");
}

TEST(PPAInformationTest, ReportsWhatItCannotRead) {
  const struct {
    std::string document;
    std::string_view device;
    std::string_view toners;
  } rows[] = {
      {"<root/>", "/no ZOLT el/no Count el", "/no ZOLT el"},
      {"<root><ZOLT><Count/></ZOLT></root>", "", ""},
      {"<root><ZOLT><Supplies><Toner><Color>M</Color></Toner></Supplies></ZOLT></root>", "",
       "/no tlevel/no UsedDotPercent/no Capacity/no TargetDot"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.document);
    PPAInformation record;
    Codes device;
    EXPECT_EQ(record.ReadXml(row.document, device), row.device.empty());
    EXPECT_EQ(device.Text(), row.device);
    Codes toners;
    EXPECT_EQ(record.ReadCountsAndSupplies(row.document, toners), row.toners.empty());
    EXPECT_EQ(toners.Text(), row.toners);
    EXPECT_EQ(record.Toners().size(), row.toners.ends_with("/no TargetDot") ? 1u : 0u);  // in spite of its gaps
  }
}

}  // namespace
}  // namespace zt
