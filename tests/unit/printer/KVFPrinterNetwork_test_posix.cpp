#include "KVFPrinterNetwork.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HexBytes.h"
#include "KVFPrinterNetwork.h"
#include "PPAInformation.h"
#include "SNMPPeer.h"
#include "TraceCapture.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kMaker = "1.3.6.1.4.1.53017.11.5.";
const std::string kStandardID = "1.3.6.1.4.1.2699.1.2.1.2.1.1.3.1";
const std::string kMakersID = kMaker + "1.1.1.26.0";
const std::string kStatusBlock = kMaker + "1.1.9.15.0";
const std::string kExtendedID = kMaker + "11.53.33.4.1.2";
const std::string kSerialNumber = "1.3.6.1.2.1.43.5.1.1.17.1";
const std::string kFirmware = kMaker + "11.53.31.1.7.0";
const std::string kInstalledDate = kMaker + "11.53.31.1.6.0";
const std::string kTTime = kMaker + "11.53.11.1.1.0";
const std::string kIBL = kMaker + "11.53.11.1.2.0";
const std::string kDocument =
    "<root><ZOLT><Count><DevTotalMonoCount>1</DevTotalMonoCount></Count><Supplies></Supplies></ZOLT></root>";

std::string PublicColumn(int column) { return "1.3.6.1.2.1.43.11.1.1." + std::to_string(column); }
std::string TonerColumn(int column) { return kMaker + "11.53.61.5.2.1." + std::to_string(column); }

class KVFPrinterNetworkTest : public testing::Test {
 protected:
  using Numbers = std::vector<std::int64_t>;
  using Texts = std::vector<std::string>;

  KVFPrinterNetworkTest() { BeColourPrinter(); }

  // A colour printer with two toners.
  void BeColourPrinter() {
    peer.Clear();
    SetDeviceID("ZOLT,CI_12");
    peer.Set(kSerialNumber, std::string("ABC123\r\n\0\0", 10));
    peer.Set(kFirmware, "V1.2");
    peer.Set(kInstalledDate, std::string("\x08\0\x03\x01", 4));  // bytes, of which one is NUL
    peer.Set(kIBL, 3000000000);
    peer.Set(kTTime, 22);
    peer.SetColumn(PublicColumn(5), Numbers{3, 3});
    peer.SetColumn(PublicColumn(8), Numbers{200, -2});
    peer.SetColumn(PublicColumn(9), Numbers{40, -3});
    peer.SetColumn(TonerColumn(2), Numbers{15, 18});
    peer.SetColumn(TonerColumn(5), Texts{"Velnora", "Velnora"});
    peer.SetColumn(TonerColumn(6), Texts{"VLN", "VLN"});
    peer.SetColumn(TonerColumn(7), Texts{"S1", "S2"});
    peer.SetColumn(TonerColumn(10), Texts{"07E80302", std::string("\x08\0\x03\x03", 4)});
    peer.SetColumn(TonerColumn(18), Numbers{5, 6});
    peer.SetColumn(TonerColumn(19), Texts{"TK", "TC"});
    peer.SetColumn(TonerColumn(21), Numbers{10, 30});
  }

  void SetDeviceID(const std::string& commands) {
    peer.Set(kStandardID, "MFG:Velnora;MDL:Velnora RV-2160;CMD:" + commands + ";");
  }

  KVFPrinterNetwork Opened() {
    KVFPrinterNetwork printer(L"127.0.0.1", fetch);
    EXPECT_EQ(printer.Open(), HResult::Ok);
    return printer;
  }

  // Collects with an access made anew and answers the codes, behind "ok" when it succeeded.
  std::string Collect() {
    record = {};
    std::string codes;
    return (Opened().GetZOLTInformation(record, codes) == HResult::Ok ? "ok" : "") + codes;
  }

  SNMPPeer peer;
  Texts fetched;
  std::optional<std::string> document;
  FetchDocument fetch = [this](const std::string& url, std::string& output) {
    fetched.push_back(url);
    if (document) output = *document;
    return document.has_value();
  };
  ZOLTInformation record;
  std::string text;
};

TEST_F(KVFPrinterNetworkTest, DeviceIDs) {
  const std::string endless = "MDL:c;" + std::string(1100, 'x');  // more than the library takes
  const struct {
    std::optional<std::string> standard;
    std::optional<std::string> makers;
    const char* model;  // "old": none
  } rows[] = {
      {"MDL:a;", "MDL:b;", "a"}, {std::nullopt, "MDL:b;", "b"}, {"", "MDL:b;", "b"},
      {endless, "MDL:b;", "b"},  {"MDL:a;", endless, "a"},      {"", std::nullopt, "old"},
  };
  for (const auto& row : rows) {
    peer.Clear();
    peer.requests.clear();
    if (row.standard) peer.Set(kStandardID, *row.standard);
    if (row.makers) peer.Set(kMakersID, *row.makers);
    KVFPrinterNetwork printer(L"127.0.0.1", fetch);
    TraceCapture trace;
    text = "old";
    const HResult opened = printer.Open();
    EXPECT_EQ(printer.GetModelName(text), opened);
    EXPECT_EQ(text, row.model);
    EXPECT_EQ(trace.Has("3 printer answers without a device ID : 127.0.0.1"), text == "old");
    EXPECT_EQ(peer.requests.front(), "get " + kStandardID + " " + kMakersID);
  }
  peer.requests.clear();
  EXPECT_EQ(KVFPrinterNetwork(L"", fetch).Open(), HResult::Fail);
  EXPECT_THAT(peer.requests, IsEmpty());
}

TEST_F(KVFPrinterNetworkTest, ExtendedDeviceIDIsMerged) {
  SetDeviceID("PJL,EXT");
  EXPECT_EQ(Opened().IsZOLTSupported(), HResult::False);  // it opens all the same
  peer.SetColumn(kExtendedID, Texts{"CMD:ZO", std::string("LT,SBXON;\0CMD:A", 15), ",B;"});
  EXPECT_EQ(Opened().IsZOLTSupported(), HResult::Ok);
  EXPECT_EQ(Opened().GetExtendedDeviceID(text), HResult::Ok);
  EXPECT_EQ(text, "CMD:ZOLT,SBXON;");
}

TEST_F(KVFPrinterNetworkTest, StatusBlock) {
  StatusBlock status;
  EXPECT_EQ(Opened().GetStatusBlock(status), HResult::Fail);
  peer.Set(kStatusBlock, "1234567");
  EXPECT_EQ(Opened().GetStatusBlock(status), HResult::Ok);
  EXPECT_FALSE(status.valid);
  peer.Set(kStatusBlock, fromHex("04 08 31 32 33 34 00 36 37 38"));
  EXPECT_EQ(Opened().GetStatusBlock(status), HResult::Ok);
  EXPECT_TRUE(status.valid);
  EXPECT_THAT(status.bytes, ElementsAre('1', '2', '3', '4', 0, '6', '7', '8'));
}

TEST_F(KVFPrinterNetworkTest, PageCounters) {
  const struct {
    Numbers maxima;
    Numbers totals;
    HResult result;
    std::uint32_t largest;
    std::uint32_t total;
  } rows[] = {
      {{10, 30}, {5, 6}, HResult::Ok, 30, 11},
      {{10, 30, 20}, {5, 6}, HResult::Fail, 7, 7},
      {{}, {}, HResult::Ok, 0, 0},
      {{-2}, {-1}, HResult::Ok, 0xFFFFFFFE, 0xFFFFFFFF},  // codes, not 0 pages
      {{-2, 3000000000, 7}, {3000000000, 1, 0}, HResult::Ok, 3000000000, 3000000001},
  };
  KVFPrinterNetwork printer = Opened();
  for (const auto& row : rows) {
    peer.Clear();
    peer.SetColumn(TonerColumn(21), row.maxima);
    peer.SetColumn(TonerColumn(18), row.totals);
    std::uint32_t largest = 7;
    std::uint32_t total = 7;
    EXPECT_EQ(printer.GetPageCounters(largest, total), row.result);
    EXPECT_EQ(std::pair(largest, total), std::pair(row.largest, row.total));
  }
}

TEST_F(KVFPrinterNetworkTest, SingleReadings) {
  const SupplyEntry unit{SupplyKind::Unit,
                         {{SupplyAttribute::UnitIBL, "3000000000"}, {SupplyAttribute::UnitTTime, "22"}}};
  KVFPrinterNetwork printer = Opened();
  std::vector<SupplyEntry> supplies;
  EXPECT_EQ(printer.GetSupplyUnitInfo(supplies), HResult::Ok);
  EXPECT_THAT(supplies, ElementsAre(unit));
  for (const std::string& name : {kIBL, PublicColumn(5) + ".1.2"}) peer.Erase(name);
  supplies.clear();
  EXPECT_EQ(printer.GetSupplyUnitInfo(supplies), HResult::Fail);
  EXPECT_THAT(supplies, ElementsAre(SupplyEntry{SupplyKind::Unit, {{SupplyAttribute::UnitTTime, "22"}}}));
  EXPECT_EQ(printer.GetSupplyLevels(supplies), HResult::Fail);
  EXPECT_EQ(supplies.size(), 1u);
  peer.Set(kInstalledDate, "no date");
  text = "old";
  EXPECT_EQ(printer.GetInstalledDate(text), HResult::Fail);
  EXPECT_EQ(text, "old");
  EXPECT_EQ(printer.SetProtection(true), HResult::NotImplemented);
}

TEST_F(KVFPrinterNetworkTest, RecordOfAColourPrinter) {
  EXPECT_EQ(Collect(), "ok");
  EXPECT_EQ(record.DeviceValues(), (ElementValues{{"CountryIndex", "12"},
                                                  {"GeneralSerialNumber", "ABC123"},
                                                  {"IBL", "3000000000"},
                                                  {"MDL", "Velnora RV-2160"},
                                                  {"ProductType", "RV"},
                                                  {"SystemFirmwareVersion", "V1.2"},
                                                  {"SystemInstalledDate", "2048-03-01"},
                                                  {"TTime", "22"}}));
  EXPECT_EQ(record.CounterValues(), (ElementValues{{"DevTotalColorCount", "30"}, {"DevTotalMonoCount", "11"}}));
  ASSERT_EQ(record.Toners().size(), 2u);
  EXPECT_EQ(record.Toners()[0].Colour(), TonerColour::Black);
  EXPECT_EQ(record.Toners()[0].Values(), (ElementValues{{"InstalledDate", "2024-03-02"},
                                                        {"Level", "20"},
                                                        {"ModelID", "TK"},
                                                        {"SerialNumber", "S1"},
                                                        {"SupplierID", "VLN"},
                                                        {"VendorName", "Velnora"}}));
  EXPECT_EQ(record.Toners()[1].Colour(), TonerColour::Cyan);
  EXPECT_EQ(record.Toners()[1].Values().at("Level"), "");  // the code -3 is no percentage
  EXPECT_FALSE(record.IsDocumentMode());
  EXPECT_THAT(fetched, IsEmpty());
}

// What a printer may lack, and what comes of it; how many toners and counters the report then has.
TEST_F(KVFPrinterNetworkTest, Gaps) {
  const struct {
    const char* result;
    std::function<void()> harm;
    std::size_t toners;
    std::size_t counters;
  } rows[] = {
      {"ok/no toner pub", [&] { peer.Erase(PublicColumn(5) + ".1.2"); }, 0, 1},
      {"ok/no toner pub", [&] { peer.Set(PublicColumn(9) + ".1.1", "40"); }, 0, 1},  // no number
      {"ok/no toner prv", [&] { peer.Set(TonerColumn(5) + ".1.1", 5); }, 0, 1},      // no text
      {"ok/no toner prv", [&] { peer.Erase(TonerColumn(7) + ".1.2"); }, 0, 1},
      {"ok/modelid missing", [&] { peer.Erase(TonerColumn(19) + ".1.2"); }, 2, 2},
      {"ok/unknown color", [&] { peer.Set(TonerColumn(2) + ".1.2", 19); }, 1, 1},  // a mono printer now
      {"ok/no instdate", [&] { peer.Set(kInstalledDate, ""); }, 2, 2},
      {"ok/invalid instdate", [&] { peer.Set(kInstalledDate, "no date"); }, 2, 2},
      {"ok/invalid level/invalid instdate/fwv err/no ibl/no ttime/no instdate",
       [&] {
         for (const std::string& name : {kFirmware, kInstalledDate, kIBL, kTTime}) peer.Erase(name);
         peer.Set(PublicColumn(9) + ".1.1", 300);
         peer.Set(TonerColumn(10) + ".1.2", "soon");
       },
       2, 2},
      {"/no counters", [&] { peer.Erase(TonerColumn(18) + ".1.1"); }, 2, 0},
      {"/serialno err", [&] { peer.Erase(kSerialNumber); }, 0, 0},
      {"/modelname err", [&] { peer.Set(kStandardID, "CMD:ZOLT"); }, 0, 0},
  };
  for (const auto& row : rows) {
    BeColourPrinter();
    row.harm();
    EXPECT_EQ(Collect(), row.result);
    EXPECT_EQ(record.Toners().size(), row.toners) << row.result;
    EXPECT_EQ(record.CounterValues().size(), row.counters) << row.result;
  }
}

TEST_F(KVFPrinterNetworkTest, UsageDocumentOfThePrinter) {
  SetDeviceID("ZOLT,RDS");
  EXPECT_EQ(Collect(), "/xml error");
  document = "no document";
  EXPECT_EQ(Collect(), "/xml error");
  document = kDocument;
  EXPECT_EQ(Collect(), "ok");
  EXPECT_EQ(fetched.size(), 3u);
  EXPECT_TRUE(record.IsDocumentMode());
  EXPECT_EQ(record.Document().Text(), kDocument);
  EXPECT_EQ(record.DeviceValues().at("MDL"), "Velnora RV-2160");
  EXPECT_EQ(record.DeviceValues().at("GeneralSerialNumber"), "ABC123");

  std::string codes;
  EXPECT_EQ(Opened().GetZOLTInformation(record, codes), HResult::Ok);
  EXPECT_EQ(fetched.size(), 3u);  // the record holds it already
  peer.Erase(kSerialNumber);
  EXPECT_EQ(Collect(), "/serialno err");
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
    PPAInformation protection;
    std::string codes;
    EXPECT_EQ(KnownPrinter(address, fetch).GetPPAInformation(protection, codes), HResult::Fail);
    EXPECT_EQ(codes, "/xml error");
    EXPECT_EQ(fetched.back(), url);
  }
}

TEST_F(KVFPrinterNetworkTest, ProtectionRecordFromObjects) {
  PPAInformation protection;
  EXPECT_EQ(Opened().GetPPAInformation(protection, text), HResult::Ok);
  EXPECT_EQ(protection.DeviceValues(), (ElementValues{{"SystemInstalledDate", "2048-03-01"}}));
  ASSERT_EQ(protection.Toners().size(), 2u);
  EXPECT_EQ(protection.Toners()[1].Values(), (ElementValues{{"SerialNumber", "S2"}}));
  EXPECT_THAT(fetched, IsEmpty());
}

}  // namespace
}  // namespace zt
