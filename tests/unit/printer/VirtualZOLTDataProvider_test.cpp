#include "VirtualZOLTDataProvider.h"

#include <gtest/gtest.h>

#include "Codes.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

TEST(VirtualZOLTDataProvider, RecordIsThatOfThePrinterAndHasNothingToCorrect) {
  VirtualZOLTDataProvider provider(L"Queue");
  std::string serialNumber;
  std::string model;
  ZOLTInformation record;
  ASSERT_TRUE(provider.GetSerialNumber(serialNumber) && provider.GetModelName(model) && provider.CollectZOLT(record));
  EXPECT_EQ(record.DeviceValues().at("GeneralSerialNumber"), serialNumber);
  EXPECT_EQ(record.DeviceValues().at("MDL"), model);
  Codes codes;
  ZOLTInformation::ValidateXml(record.BuildXml(), codes);
  EXPECT_EQ(codes.Text(), "/info:is not RQD");
}

}  // namespace
}  // namespace zt
