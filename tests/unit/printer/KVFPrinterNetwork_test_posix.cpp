#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KVFPrinterNetwork.h"
#include "PPAInformation.h"
#include "SNMPPeer.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kStandardID = "1.3.6.1.4.1.2699.1.2.1.2.1.1.3.1";
constexpr const char* kMakersID = "1.3.6.1.4.1.53017.11.5.1.1.1.26.0";
constexpr const char* kStatusBlock = "1.3.6.1.4.1.53017.11.5.1.1.9.15.0";
constexpr const char* kExtendedID = "1.3.6.1.4.1.53017.11.5.11.53.33.4.1.2";
constexpr const char* kSerialNumber = "1.3.6.1.2.1.43.5.1.1.17.1";
constexpr const char* kFirmware = "1.3.6.1.4.1.53017.11.5.11.53.31.1.7.0";
constexpr const char* kInstalledDate = "1.3.6.1.4.1.53017.11.5.11.53.31.1.6.0";
constexpr const char* kTTime = "1.3.6.1.4.1.53017.11.5.11.53.11.1.1.0";
constexpr const char* kIBL = "1.3.6.1.4.1.53017.11.5.11.53.11.1.2.0";
constexpr const char* kDocument =
    "<root><ZOLT><Count><DevTotalMonoCount>1</DevTotalMonoCount></Count><Supplies></Supplies></ZOLT></root>";

std::string PublicColumn(int column) { return "1.3.6.1.2.1.43.11.1.1." + std::to_string(column); }
std::string TonerColumn(int column) { return "1.3.6.1.4.1.53017.11.5.11.53.61.5.2.1." + std::to_string(column); }

class KVFPrinterNetworkTest : public testing::Test {
 protected:
  using Numbers = std::vector<std::int32_t>;
  using Strings = std::vector<std::string>;

  // A colour printer with two toners.
  KVFPrinterNetworkTest() {
    SetDeviceID("ZOLT,CI_12");
    peer.Set(kSerialNumber, "ABC123\r\n");
    peer.Set(kFirmware, "V1.2");
    peer.Set(kInstalledDate, "07E80301");
    peer.Set(kIBL, 11);
    peer.Set(kTTime, 22);
    peer.SetColumn<std::int32_t>(PublicColumn(5), {3, 3});
    peer.SetColumn<std::int32_t>(PublicColumn(8), {200, -2});
    peer.SetColumn<std::int32_t>(PublicColumn(9), {40, -3});
    peer.SetColumn<std::int32_t>(TonerColumn(2), {15, 18});
    peer.SetColumn<std::string>(TonerColumn(5), {"Velnora", "Velnora"});
    peer.SetColumn<std::string>(TonerColumn(6), {"VLN", "VLN"});
    peer.SetColumn<std::string>(TonerColumn(7), {"S1", "S2"});
    peer.SetColumn<std::string>(TonerColumn(10), {"07E80302", "07E80303"});
    peer.SetColumn<std::int32_t>(TonerColumn(18), {5, 6});
    peer.SetColumn<std::string>(TonerColumn(19), {"TK", "TC"});
    peer.SetColumn<std::int32_t>(TonerColumn(21), {10, 30});
  }

  void SetDeviceID(const std::string& commands) {
    peer.Set(kStandardID, "MFG:Velnora;MDL:Velnora RV-2160;CMD:" + commands + ";");
  }

  void EraseColumn(const std::string& column) {
    for (const char* row : {".1.1", ".1.2", ".1.3"}) peer.Erase(column + row);
  }

  HResult Collect(ZOLTInformation& record, std::string& errorText) {
    EXPECT_EQ(printer.Open(), HResult::Ok);
    return printer.GetZOLTInformation(record, errorText);
  }

  SNMPPeer peer;
  std::vector<std::string> fetched;
  std::optional<std::string> document;
  FetchDocument fetch = [this](const std::string& url, std::string& text) {
    fetched.push_back(url);
    if (document) text = *document;
    return document.has_value();
  };
  KVFPrinterNetwork printer{L"127.0.0.1", fetch};
};

TEST_F(KVFPrinterNetworkTest, OpenReadsTheDeviceID) {
  EXPECT_EQ(printer.Open(), HResult::Ok);
  std::string text;
  EXPECT_EQ(printer.GetModelName(text), HResult::Ok);
  EXPECT_EQ(text, "Velnora RV-2160");
  EXPECT_EQ(printer.GetModelFamilyName(text), HResult::Ok);
  EXPECT_EQ(text, "RV");
  EXPECT_EQ(printer.GetCountryIndex(text), HResult::Ok);
  EXPECT_EQ(text, "12");
  EXPECT_EQ(printer.IsZOLTSupported(), HResult::Ok);
  // One request for both device IDs, and the one that knows only the first.
  EXPECT_EQ(peer.requests.size(), 2u);
}

TEST_F(KVFPrinterNetworkTest, DeviceIDs) {
  struct Row {
    const char* standard;  // null: the printer has no such object
    const char* makers;
    const char* model;  // null: does not open
  };
  const Row rows[] = {
      {"MDL:a;", "MDL:b;", "a"},   {nullptr, "MDL:b;", "b"}, {"", "MDL:b;", "b"},
      {nullptr, nullptr, nullptr}, {"", "", nullptr},
  };
  for (const Row& row : rows) {
    peer.Erase(kStandardID);
    peer.Erase(kMakersID);
    if (row.standard) peer.Set(kStandardID, row.standard);
    if (row.makers) peer.Set(kMakersID, row.makers);
    KVFPrinterNetwork other{L"127.0.0.1", fetch};
    EXPECT_EQ(other.Open(), row.model ? HResult::Ok : HResult::Fail);
    std::string model;
    EXPECT_EQ(other.GetModelName(model), row.model ? HResult::Ok : HResult::Fail);
    if (row.model) {
      EXPECT_EQ(model, row.model);
    }
  }
}

TEST_F(KVFPrinterNetworkTest, ExtendedDeviceIDIsMerged) {
  SetDeviceID("PJL,EXT");
  EXPECT_EQ(printer.Open(), HResult::Ok);  // a printer that has no extended ID opens all the same
  EXPECT_EQ(printer.IsZOLTSupported(), HResult::False);

  peer.SetColumn<std::string>(kExtendedID, {"CMD:ZO", "LT,SBXON;"});
  EXPECT_EQ(printer.Open(), HResult::Ok);
  EXPECT_EQ(printer.IsZOLTSupported(), HResult::Ok);
  std::uint32_t state = 0;
  EXPECT_EQ(printer.GetSBXState(&state), HResult::Ok);
  EXPECT_EQ(state, 1u);
  std::string text;
  EXPECT_EQ(printer.GetExtendedDeviceID(text), HResult::Ok);
  EXPECT_EQ(text, "CMD:ZOLT,SBXON;");
}

TEST_F(KVFPrinterNetworkTest, EmptyAddressSendsNothing) {
  KVFPrinterNetwork nowhere{L"", fetch};
  EXPECT_EQ(nowhere.Open(), HResult::Fail);
  EXPECT_THAT(peer.requests, IsEmpty());
}

TEST_F(KVFPrinterNetworkTest, StatusBlock) {
  StatusBlock status;
  EXPECT_EQ(printer.Open(), HResult::Ok);
  EXPECT_EQ(printer.GetStatusBlock(status), HResult::Fail);
  peer.Set(kStatusBlock, "1234567");
  EXPECT_EQ(printer.GetStatusBlock(status), HResult::Ok);
  EXPECT_FALSE(status.valid);
  peer.Set(kStatusBlock, "12345678");
  EXPECT_EQ(printer.GetStatusBlock(status), HResult::Ok);
  EXPECT_TRUE(status.valid);
  EXPECT_THAT(status.bytes, ElementsAre('1', '2', '3', '4', '5', '6', '7', '8'));
}

TEST_F(KVFPrinterNetworkTest, SerialNumberIsAskedOnce) {
  printer.Open();
  peer.requests.clear();
  std::string text;
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(printer.GetSerialNumber(text), HResult::Ok);
    EXPECT_EQ(text, "ABC123");
  }
  EXPECT_EQ(peer.requests.size(), 1u);
}

TEST_F(KVFPrinterNetworkTest, PageCounters) {
  struct Row {
    Numbers maxima;
    Numbers totals;
    HResult result;
    std::uint32_t largest;
    std::uint32_t total;
  };
  const Row rows[] = {
      {{10, 30}, {5, 6}, HResult::Ok, 30, 11},
      {{10, 30, 20}, {5, 6}, HResult::Fail, 7, 7},
      {{}, {}, HResult::Ok, 0, 0},
      {{-5}, {-1}, HResult::Ok, 0, 0xFFFFFFFF},
      {{2147483647}, {2147483647}, HResult::Ok, 2147483647, 2147483647},
  };
  printer.Open();
  for (const Row& row : rows) {
    EraseColumn(TonerColumn(21));
    EraseColumn(TonerColumn(18));
    peer.SetColumn(TonerColumn(21), row.maxima);
    peer.SetColumn(TonerColumn(18), row.totals);
    std::uint32_t largest = 7;
    std::uint32_t total = 7;
    EXPECT_EQ(printer.GetPageCounters(largest, total), row.result);
    EXPECT_EQ(std::pair(largest, total), std::pair(row.largest, row.total));
  }
}

TEST_F(KVFPrinterNetworkTest, SupplyTablesThatDoNotMatchGiveNothing) {
  struct Row {
    std::string column;
    const char* note;
  };
  const Row rows[] = {
      {PublicColumn(5), "/no toner pub"}, {PublicColumn(8), "/no toner pub"}, {PublicColumn(9), "/no toner pub"},
      {TonerColumn(2), "/no toner prv"},  {TonerColumn(5), "/no toner prv"},  {TonerColumn(7), "/no toner prv"},
      {TonerColumn(10), "/no toner prv"},
  };
  for (const Row& row : rows) {
    peer.Erase(row.column + ".1.2");
    std::vector<SupplyEntry> supplies;
    EXPECT_EQ(printer.Open(), HResult::Ok);
    EXPECT_EQ(printer.GetSupplyLevels(supplies), HResult::Fail) << row.column;
    EXPECT_THAT(supplies, IsEmpty());
    ZOLTInformation record;
    std::string errorText;
    EXPECT_EQ(printer.GetZOLTInformation(record, errorText), HResult::Ok);  // the report goes on
    EXPECT_EQ(errorText, row.note) << row.column;
    EXPECT_THAT(record.Toners(), IsEmpty());

    if (row.column.starts_with("1.3.6.1.2.1.43")) {
      peer.Set(row.column + ".1.2", 3);
    } else if (row.column == TonerColumn(2)) {
      peer.Set(row.column + ".1.2", 18);
    } else {
      peer.Set(row.column + ".1.2", "x");
    }
  }
}

TEST_F(KVFPrinterNetworkTest, SupplyUnit) {
  printer.Open();
  std::vector<SupplyEntry> units;
  EXPECT_EQ(printer.GetSupplyUnitInfo(units), HResult::Ok);
  const SupplyEntry both{SupplyKind::Unit, {{SupplyAttribute::UnitIBL, "11"}, {SupplyAttribute::UnitTTime, "22"}}};
  EXPECT_THAT(units, ElementsAre(both));

  units.clear();
  peer.Erase(kIBL);
  EXPECT_EQ(printer.GetSupplyUnitInfo(units), HResult::Fail);
  EXPECT_THAT(units, ElementsAre(SupplyEntry{SupplyKind::Unit, {{SupplyAttribute::UnitTTime, "22"}}}));

  units.clear();
  peer.Erase(kTTime);
  EXPECT_EQ(printer.GetSupplyUnitInfo(units), HResult::Fail);
  EXPECT_THAT(units, IsEmpty());
}

TEST_F(KVFPrinterNetworkTest, InstalledDate) {
  printer.Open();
  std::string date;
  EXPECT_EQ(printer.GetInstalledDate(date), HResult::Ok);
  EXPECT_EQ(date, "2024-03-01");
  peer.Set(kInstalledDate, "no date");
  EXPECT_EQ(printer.GetInstalledDate(date), HResult::Fail);
  EXPECT_EQ(date, "2024-03-01");
}

TEST_F(KVFPrinterNetworkTest, RecordOfAColourPrinter) {
  ZOLTInformation record;
  std::string errorText;
  EXPECT_EQ(Collect(record, errorText), HResult::Ok);
  EXPECT_EQ(errorText, "");
  EXPECT_EQ(record.DeviceValues(), (ElementValues{{"CountryIndex", "12"},
                                                  {"GeneralSerialNumber", "ABC123"},
                                                  {"IBL", "11"},
                                                  {"MDL", "Velnora RV-2160"},
                                                  {"ProductType", "RV"},
                                                  {"SystemFirmwareVersion", "V1.2"},
                                                  {"SystemInstalledDate", "2024-03-01"},
                                                  {"TTime", "22"}}));
  EXPECT_EQ(record.CounterValues(), (ElementValues{{"DevTotalColorCount", "30"}, {"DevTotalMonoCount", "11"}}));
  ASSERT_EQ(record.Toners().size(), 2u);
  EXPECT_EQ(record.Toners()[0].Colour(), 4);
  EXPECT_EQ(record.Toners()[0].Values(), (ElementValues{{"InstalledDate", "2024-03-02"},
                                                        {"Level", "20"},
                                                        {"ModelID", "TK"},
                                                        {"SerialNumber", "S1"},
                                                        {"SupplierID", "VLN"},
                                                        {"VendorName", "Velnora"}}));
  EXPECT_EQ(record.Toners()[1].Colour(), 1);
  EXPECT_EQ(record.Toners()[1].Values().at("Level"), "");  // the code -3 is no percentage
  EXPECT_FALSE(record.IsDocumentMode());
  EXPECT_THAT(fetched, IsEmpty());
}

TEST_F(KVFPrinterNetworkTest, MonoPrinterHasNoColourCounter) {
  peer.Set(TonerColumn(2) + ".1.2", 19);
  ZOLTInformation record;
  std::string errorText;
  EXPECT_EQ(Collect(record, errorText), HResult::Ok);
  EXPECT_EQ(errorText, "/unknown color");
  EXPECT_EQ(record.CounterValues(), (ElementValues{{"DevTotalMonoCount", "11"}}));
}

TEST_F(KVFPrinterNetworkTest, GapsAreNotedInOrder) {
  for (const char* name : {kFirmware, kInstalledDate, kIBL, kTTime}) peer.Erase(name);
  peer.Set(PublicColumn(9) + ".1.1", 300);
  peer.Erase(TonerColumn(19) + ".1.2");
  peer.Set(TonerColumn(10) + ".1.2", "soon");
  peer.Set(kStandardID, "MDL:Other;CMD:ZOLT");
  ZOLTInformation record;
  std::string errorText = "/before";
  EXPECT_EQ(Collect(record, errorText), HResult::Ok);
  EXPECT_EQ(errorText, "/before/invalid level/modelid missing/invalid instdate/fwv err/no ibl/no ttime/no instdate");
  EXPECT_EQ(record.DeviceValues(), (ElementValues{{"GeneralSerialNumber", "ABC123"}, {"MDL", "Other"}}));
}

TEST_F(KVFPrinterNetworkTest, WhatEndsACollection) {
  ZOLTInformation record;
  std::string errorText;
  peer.Set(kStandardID, "CMD:ZOLT");
  EXPECT_EQ(Collect(record, errorText), HResult::Fail);
  EXPECT_EQ(errorText, "/modelname err");

  errorText.clear();
  SetDeviceID("ZOLT");
  peer.Erase(kSerialNumber);
  EXPECT_EQ(Collect(record, errorText), HResult::Fail);
  EXPECT_EQ(errorText, "/serialno err");

  errorText.clear();
  peer.Set(kSerialNumber, "S");
  peer.Erase(TonerColumn(18) + ".1.1");
  EXPECT_EQ(Collect(record, errorText), HResult::Fail);
  EXPECT_EQ(errorText, "/no counters");
}

TEST_F(KVFPrinterNetworkTest, UsageDocumentOfThePrinter) {
  SetDeviceID("ZOLT,RDS");
  document = kDocument;
  ZOLTInformation record;
  std::string errorText;
  EXPECT_EQ(Collect(record, errorText), HResult::Ok);
  EXPECT_EQ(errorText, "");
  EXPECT_THAT(fetched, ElementsAre("http://127.0.0.1/rds/rds.xml"));
  EXPECT_TRUE(record.IsDocumentMode());
  EXPECT_EQ(record.DeviceDocument(), kDocument);
  EXPECT_EQ(record.DeviceValues().at("MDL"), "Velnora RV-2160");
  EXPECT_EQ(record.DeviceValues().at("GeneralSerialNumber"), "ABC123");

  EXPECT_EQ(printer.GetZOLTInformation(record, errorText), HResult::Ok);
  EXPECT_EQ(fetched.size(), 1u);  // the record holds it already
}

TEST_F(KVFPrinterNetworkTest, UsageDocumentIsFetchedFromTheAddressOfThePort) {
  // Knows its device ID without having been opened.
  struct KnownPrinter : KVFPrinterNetwork {
    KnownPrinter(const wchar_t* address, FetchDocument fetch) : KVFPrinterNetwork(address, std::move(fetch)) {
      AdoptDeviceID("CMD:RDS;");
    }
  };
  const std::pair<const wchar_t*, const char*> rows[] = {
      {L"192.168.1.20", "http://192.168.1.20/rds/rds.xml"},
      {L"printer.example", "http://printer.example/rds/rds.xml"},
      {L"fe80::1", "http://[fe80::1]/rds/rds.xml"},
  };
  for (const auto& [address, url] : rows) {
    PPAInformation record;
    std::string errorText;
    EXPECT_EQ(KnownPrinter(address, fetch).GetPPAInformation(record, errorText), HResult::Fail);
    EXPECT_EQ(errorText, "/xml error");
    EXPECT_EQ(fetched.back(), url);
  }
}

TEST_F(KVFPrinterNetworkTest, UsageDocumentFailures) {
  SetDeviceID("ZOLT,RDS");
  ZOLTInformation record;
  std::string errorText;
  EXPECT_EQ(Collect(record, errorText), HResult::Fail);
  EXPECT_EQ(errorText, "/xml error");

  errorText.clear();
  document = "no document";
  EXPECT_EQ(Collect(record, errorText), HResult::Fail);
  EXPECT_EQ(errorText, "/xml error");

  ZOLTInformation other;
  errorText.clear();
  document = kDocument;
  peer.Erase(kSerialNumber);
  KVFPrinterNetwork nameless{L"127.0.0.1", fetch};
  EXPECT_EQ(nameless.Open(), HResult::Ok);
  EXPECT_EQ(nameless.GetZOLTInformation(other, errorText), HResult::Fail);
  EXPECT_EQ(errorText, "/serialno err");
}

TEST_F(KVFPrinterNetworkTest, ProtectionRecordFromObjects) {
  EXPECT_EQ(printer.Open(), HResult::Ok);
  PPAInformation record;
  std::string errorText;
  EXPECT_EQ(printer.GetPPAInformation(record, errorText), HResult::Ok);
  EXPECT_EQ(record.DeviceValues(), (ElementValues{{"SystemInstalledDate", "2024-03-01"}}));
  ASSERT_EQ(record.Toners().size(), 2u);
  EXPECT_EQ(record.Toners()[1].Values(), (ElementValues{{"SerialNumber", "S2"}}));
  EXPECT_THAT(fetched, IsEmpty());
}

TEST_F(KVFPrinterNetworkTest, NotOfferedOverTheNetwork) {
  EXPECT_EQ(printer.Unused(), HResult::NotImplemented);
  EXPECT_EQ(printer.SetProtection(true), HResult::NotImplemented);
  EXPECT_FALSE(printer.IsUSB());
}

}  // namespace
}  // namespace zt
