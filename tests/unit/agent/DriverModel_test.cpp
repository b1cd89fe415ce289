#include "DriverModel.h"

#include <gtest/gtest.h>

namespace zt {
namespace {

TEST(DriverModel, TheLastLanguageTokenEndsTheModel) {
  const struct {
    const wchar_t* driver;
    const wchar_t* model;
  } rows[] = {
      {L"Model 1 PS Model 2 PS", L"Model 1 PS Model 2"},
      {L"Model 9 XPS PCL", L"Model 9 XPS"},    // " PCL" before " XPS"
      {L"Model 9 PCL PS2 x", L"Model 9 PCL"},  // " PS" before " PCL"
      {L"Model 9 XPS", L"Model 9"},
      {L"Model 9 pcl", L"Model 9 pcl"},
      {L"ModelPCL", L"ModelPCL"},
      {L" PS", L""},
  };
  for (const auto& row : rows) EXPECT_EQ(ModelOfDriver(row.driver), row.model);
}

}  // namespace
}  // namespace zt
