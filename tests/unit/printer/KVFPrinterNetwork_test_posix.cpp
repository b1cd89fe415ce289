#include "KVFPrinterNetwork.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KVFPrinterNetwork.h"
#include "PPAInformation.h"
#include "SNMPPeer.h"
#include "TraceCapture.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

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

std::string Joined(const ElementValues& values) {
  std::string text;
  for (const auto& [name, value] : values) text += name + "=" + value + " ";
  return text;
}

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
  const std::string endless = "MDL:c;" + std::string(1100, 'x');    // more than the library takes
  const std::tuple<std::string, std::string, const char*> rows[] = {// the standard object, the maker's, the model
                                                                    {"MDL:a;", endless, "a"},
                                                                    {"", "MDL:b;", "b"},
                                                                    {endless, "MDL:b;", "b"}};
  for (const auto& [standard, makers, model] : rows) {
    peer.Set(kStandardID, standard);
    peer.Set(kMakersID, makers);
    EXPECT_EQ(Opened().GetModelName(text), HResult::Ok);
    EXPECT_EQ(text, model);
  }
  peer.Clear();
  TraceCapture trace;
  EXPECT_EQ(KVFPrinterNetwork(L"127.0.0.1", fetch).Open(), HResult::Fail);
  EXPECT_TRUE(trace.Has("3 printer answers without a device ID : 127.0.0.1"));
  peer.requests.clear();
  EXPECT_EQ(KVFPrinterNetwork(L"", fetch).Open(), HResult::Fail);
  EXPECT_THAT(peer.requests, IsEmpty());

  SetDeviceID("PJL,EXT");
  EXPECT_EQ(Opened().IsZOLTSupported(), HResult::False);  // it opens all the same
  peer.SetColumn(kExtendedID, Texts{"CMD:ZO", std::string("LT,SBXON;\0CMD:A", 15), ",B;"});
  EXPECT_EQ(Opened().IsZOLTSupported(), HResult::Ok);
  peer.community = "secret";
  KVFPrinterNetwork printer(L"127.0.0.1", fetch);
  EXPECT_FALSE(printer.SetReadCommunity("") || printer.SetReadCommunity(std::string(26, 'c')));
  EXPECT_TRUE(printer.SetReadCommunity("secret"));
  EXPECT_EQ(printer.Open(), HResult::Ok);
}

TEST_F(KVFPrinterNetworkTest, StatusBlock) {
  StatusBlock status;
  EXPECT_EQ(Opened().GetStatusBlock(status), HResult::Fail);
  for (const char* block : {"1234567", "12345678"}) {
    peer.Set(kStatusBlock, block);
    EXPECT_EQ(Opened().GetStatusBlock(status), HResult::Ok);
    EXPECT_EQ(status.valid, std::string_view(block).size() == 8);
  }
  EXPECT_EQ(status.bytes[7], '8');
}

TEST_F(KVFPrinterNetworkTest, PageCounters) {
  const std::tuple<Numbers, Numbers, HResult, std::uint32_t, std::uint32_t> rows[] = {
      // maxima and totals of the toners; what comes of them
      {{10, 30, 20}, {5, 6}, HResult::Fail, 7, 7},
      {{}, {}, HResult::Ok, 0, 0},
      {{-2}, {-1}, HResult::Ok, 0xFFFFFFFE, 0xFFFFFFFF},  // codes, not 0 pages
      {{-2, 3000000000, 7}, {3000000000, 1, 0}, HResult::Ok, 3000000000, 3000000001},
  };
  KVFPrinterNetwork printer = Opened();
  for (const auto& [maxima, totals, result, expectedLargest, expectedTotal] : rows) {
    peer.Clear();
    peer.SetColumn(TonerColumn(21), maxima);
    peer.SetColumn(TonerColumn(18), totals);
    std::uint32_t largest = 7;
    std::uint32_t total = 7;
    EXPECT_EQ(printer.GetPageCounters(largest, total), result);
    EXPECT_EQ(std::pair(largest, total), std::pair(expectedLargest, expectedTotal));
  }
}

TEST_F(KVFPrinterNetworkTest, RecordOfAColourPrinter) {
  EXPECT_EQ(Collect(), "ok");
  EXPECT_EQ(Joined(record.DeviceValues()),
            "CountryIndex=12 GeneralSerialNumber=ABC123 IBL=3000000000 MDL=Velnora RV-2160 ProductType=RV "
            "SystemFirmwareVersion=V1.2 SystemInstalledDate=2048-03-01 TTime=22 ");
  EXPECT_EQ(Joined(record.CounterValues()), "DevTotalColorCount=30 DevTotalMonoCount=11 ");
  ASSERT_EQ(record.Toners().size(), 2u);
  EXPECT_EQ(Joined(record.Toners()[0].Values()),
            "InstalledDate=2024-03-02 Level=20 ModelID=TK SerialNumber=S1 SupplierID=VLN VendorName=Velnora ");
  EXPECT_EQ(record.Toners()[1].Colour(), TonerColour::Cyan);
  EXPECT_EQ(record.Toners()[1].Values().at("Level"), "");  // the code -3 is no percentage
  EXPECT_FALSE(record.IsDocumentMode());

  PPAInformation protection;
  EXPECT_EQ(Opened().GetPPAInformation(protection, text), HResult::Ok);
  EXPECT_EQ(Joined(protection.DeviceValues()), "SystemInstalledDate=2048-03-01 ");
  ASSERT_EQ(protection.Toners().size(), 2u);
  EXPECT_EQ(Joined(protection.Toners()[1].Values()), "SerialNumber=S2 ");
}

// What a printer may lack, and what comes of it; how many toners and counters the report then has.
TEST_F(KVFPrinterNetworkTest, Gaps) {
  const std::tuple<const char*, Texts, std::size_t, std::size_t> rows[] = {
      {"ok/no toner pub", {PublicColumn(5) + ".1.2"}, 0, 1},
      {"ok/no toner prv", {TonerColumn(7) + ".1.2"}, 0, 1},
      {"ok/modelid missing", {TonerColumn(19) + ".1.2"}, 2, 2},
      {"ok/fwv err/no ibl/no ttime/no instdate", {kFirmware, kInstalledDate, kIBL, kTTime}, 2, 2},
      {"/no counters", {TonerColumn(18) + ".1.1"}, 2, 0},
      {"/serialno err", {kSerialNumber}, 0, 0},
  };
  for (const auto& [result, lacks, toners, counters] : rows) {
    BeColourPrinter();
    for (const std::string& name : lacks) peer.Erase(name);
    EXPECT_EQ(Collect(), result);
    EXPECT_EQ(record.Toners().size(), toners) << result;
    EXPECT_EQ(record.CounterValues().size(), counters) << result;
  }
  // Of another type than they should be; a date that is none; a printer of one colour.
  BeColourPrinter();
  peer.Set(PublicColumn(9) + ".1.1", "40");
  peer.Set(kInstalledDate, "no date");
  EXPECT_EQ(Collect(), "ok/no toner pub/invalid instdate");
  peer.Set(PublicColumn(9) + ".1.1", 40);
  peer.Set(TonerColumn(2) + ".1.2", 19);
  EXPECT_EQ(Collect(), "ok/unknown color/invalid instdate");
  EXPECT_EQ(record.CounterValues().size(), 1u);
}

TEST_F(KVFPrinterNetworkTest, UsageDocumentOfThePrinter) {
  SetDeviceID("ZOLT,RDS");
  EXPECT_EQ(Collect(), "/xml error");
  document = "no document";
  EXPECT_EQ(Collect(), "/xml error");
  document = kDocument;
  EXPECT_EQ(Collect(), "ok");
  EXPECT_TRUE(record.IsDocumentMode());
  EXPECT_EQ(record.Document().Text(), kDocument);
  EXPECT_EQ(record.DeviceValues().at("GeneralSerialNumber"), "ABC123");
  EXPECT_EQ(Opened().GetZOLTInformation(record, text), HResult::Ok);
  EXPECT_EQ(fetched, Texts(3, "http://127.0.0.1/rds/rds.xml"));  // the record holds it already
  peer.Erase(kSerialNumber);
  EXPECT_EQ(Collect(), "/serialno err");

  // Knows its device ID without having been opened.
  struct KnownPrinter : KVFPrinterNetwork {
    KnownPrinter(FetchDocument fetch) : KVFPrinterNetwork(L"fe80::1", std::move(fetch)) { AdoptDeviceID("CMD:RDS;"); }
  };
  PPAInformation protection;
  document.reset();
  EXPECT_EQ(KnownPrinter(fetch).GetPPAInformation(protection, text), HResult::Fail);
  EXPECT_EQ(text, "/xml error");
  EXPECT_EQ(fetched.back(), "http://[fe80::1]/rds/rds.xml");
}

}  // namespace
}  // namespace zt
