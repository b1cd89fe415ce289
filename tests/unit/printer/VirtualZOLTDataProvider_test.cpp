#include "VirtualZOLTDataProvider.h"

#include <gtest/gtest.h>

#include "ZOLTInformation.h"

namespace zt {
namespace {

TEST(VirtualZOLTDataProvider, RecordHasNothingToCorrect) {
  VirtualZOLTDataProvider provider(L"Queue");
  ZOLTInformation record;
  ASSERT_TRUE(provider.CollectZOLT(record));
  std::string messages;
  ZOLTInformation::ValidateXml(record.BuildXml(), messages);
  EXPECT_EQ(messages, "/info:is not RQD");
}

TEST(VirtualZOLTDataProvider, RecordIsThatOfTheSerialNumber) {
  VirtualZOLTDataProvider provider(L"Queue");
  std::string serialNumber;
  std::string model;
  ZOLTInformation record;
  ASSERT_TRUE(provider.GetSerialNumber(serialNumber) && provider.GetModelName(model) && provider.CollectZOLT(record));
  EXPECT_EQ(record.DeviceValues().at("GeneralSerialNumber"), serialNumber);
  EXPECT_EQ(record.DeviceValues().at("MDL"), model);
}

}  // namespace
}  // namespace zt
