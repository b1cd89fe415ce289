#include "USBProtocol.h"

#include <gtest/gtest.h>

#include <string>

#include "USBPortName.h"

namespace zt {
namespace {

TEST(USBPortNumber, Table) {
  const std::pair<std::wstring_view, std::optional<std::uint32_t>> rows[] = {
      {L"USB001", 1},
      {L"12", 2},  // the first character never counts
      {L"X4294967295", 4294967295},
      {L"X4294967296", std::nullopt},
      {L"USB001:", std::nullopt},
      {L"1", std::nullopt},
      {L"USB\x0661", std::nullopt},  // a digit of another script
  };
  for (const auto& [name, number] : rows) EXPECT_EQ(USBPortNumber(name), number);
}

TEST(SuppliesOfStatus, FourTonersInTwoFamilies) {
  const USBStatus status = {0, 1, 2, 3, 40, 50, 60, 255};
  const auto entry = [](SupplyKind kind, const char* level) {
    return SupplyEntry{kind, {{SupplyAttribute::Level, level}}};
  };
  std::vector<SupplyEntry> supplies = {entry(SupplyKind::Cyan, "40")};
  EXPECT_EQ(SuppliesOfStatus(status, ModelFamily::RV), supplies);
  supplies.push_back(entry(SupplyKind::Black, "50"));
  supplies.push_back(entry(SupplyKind::Magenta, "60"));
  supplies.push_back(entry(SupplyKind::Yellow, "255"));
  EXPECT_EQ(SuppliesOfStatus(status, ModelFamily::PHT), supplies);
  EXPECT_EQ(SuppliesOfStatus(status, ModelFamily::PHZ), supplies);
}

TEST(ReadCounterBlock, LargestAndTotal) {
  std::vector<std::uint8_t> block(21);
  EXPECT_EQ(ReadCounterBlock(block), (USBPageCounters{0, 0}));  // a new printer
  block = {0x01, 0x02, 0x03, 0x04, 0, 0, 0, 10, 0, 0, 0, 40, 0, 0, 0, 30, 0, 0, 0, 20, 0xFF};
  EXPECT_EQ(ReadCounterBlock(block), (USBPageCounters{40, 0x01020304}));
  block[16] = 0xFF;  // the last one, as an unsigned number
  EXPECT_EQ(ReadCounterBlock(block), (USBPageCounters{0xFF000014, 0x01020304}));
  EXPECT_EQ(ReadCounterBlock(std::span(block).first(19)), std::nullopt);
}

TEST(ReadFirmwareVersion, Table) {
  const std::string marker = "Main Firmware Version@";
  const std::string longVersion = "V1.2.3.4.5.6.7.8.9.10.11";
  const std::pair<std::string, std::string> rows[] = {
      {"V1.2;x", "V1.2;x"},  // no marker: all of it
      {marker, ""},
      {marker + "V1.00.00.12;Boot@V2", "V1.00.00.12;Boot@V2"},  // the ';' stands too far in front
      {marker + longVersion + ";Boot@V2", longVersion},
      {marker + std::string(22, 'v') + ";x", std::string(22, 'v')},
      {marker + std::string(21, 'v') + ";x", std::string(21, 'v') + ";x"},
      {marker + longVersion, longVersion},
      // With something in front of the marker, as much is lost at the end.
      {"ab" + marker + longVersion, longVersion.substr(2)},
      {"ab" + marker + std::string(24, 'v') + ";x", std::string(24, 'v')},
      {std::string(30, 'a') + marker + "V1", ""},
      {marker + marker, marker},
  };
  for (const auto& [text, version] : rows) {
    EXPECT_EQ(ReadFirmwareVersion(text), version) << text;
    for (std::size_t length = 0; length < text.size(); ++length) ReadFirmwareVersion(text.substr(0, length));
  }
}

}  // namespace
}  // namespace zt
