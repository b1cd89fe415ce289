#include "PPAInformation.h"

#include <gtest/gtest.h>

#include "Codes.h"

namespace zt {
namespace {

constexpr char report[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<root>\n<ZOLT>\n<CurrentVersion>2</CurrentVersion>\n"
    "<FormatType>F</FormatType>\n<GeneralSerialNumber>SN1</GeneralSerialNumber>\n<MDL>Model 1</MDL>\n<SBX>1</SBX>\n"
    "<SystemInstalledDate>2014-03-06</SystemInstalledDate>\n<Supplies>\n<Toner>\n<Color>M</Color>\n"
    "<Capacity>9</Capacity>\n<SerialNumber>T1</SerialNumber>\n<TargetDot>8</TargetDot>\n"
    "<UsedDotPercent>7</UsedDotPercent>\n</Toner>\n</Supplies>\n<ZOLTAgree>1</ZOLTAgree>\n</ZOLT>\n</root>\n";

TEST(PPAInformationTest, WritesWhatItHasReadInTwoSteps) {
  PPAInformation record;
  Codes codes;
  EXPECT_TRUE(record.ReadXml(std::string(report), codes));
  EXPECT_TRUE(record.Toners().empty());
  EXPECT_TRUE(record.ReadCountsAndSupplies(std::string(report), codes));
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
    const char* document;
    std::string_view device;
    std::string_view toners;
    std::size_t read = 0;
  } rows[] = {
      {"", "/xml error", "/xml error"},
      {"<root/>", "/no ZOLT el/no Count el", "/no ZOLT el"},
      {"<root><ZOLT/></root>", "/no Count el", ""},
      {"<root><ZOLT><Count/></ZOLT></root>", "", ""},
      {"<root><ZOLT><Supplies><Toner><Color>X</Color></Toner></Supplies></ZOLT></root>", "", "/invalid tcolor"},
      {"<root><ZOLT><Supplies><Toner><Color>M</Color></Toner></Supplies></ZOLT></root>", "",
       "/no tlevel/no UsedDotPercent/no Capacity/no TargetDot", 1},
  };
  for (const auto& row : rows) {
    PPAInformation record;
    Codes device;
    Codes toners;
    EXPECT_EQ(record.ReadXml(std::string(row.document), device), row.device.empty()) << row.document;
    EXPECT_EQ(record.ReadCountsAndSupplies(std::string(row.document), toners), row.toners.empty()) << row.document;
    EXPECT_EQ(device.Text(), row.device) << row.document;
    EXPECT_EQ(toners.Text(), row.toners) << row.document;
    EXPECT_EQ(record.Toners().size(), row.read) << row.document;
  }
}

}  // namespace
}  // namespace zt
