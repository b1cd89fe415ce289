#include <gtest/gtest.h>

#include <algorithm>

#include "FakePrinter.h"
#include "IdentityPage.h"
#include "SuppliesPage.h"

namespace zt {
namespace {

// TalkingPrinter also tells its device ID and its toners.
class TalkingPrinter : public FakePrinter {
 public:
  explicit TalkingPrinter(std::string id) : FakePrinter(id), deviceID(std::move(id)) {}

  std::string deviceID;
  std::vector<SupplyEntry> toners;

  HResult GetDeviceID(std::string& text) override {
    text = deviceID;
    return HResult::Ok;
  }
  HResult GetSupplyLevels(std::vector<SupplyEntry>& supplies) override {
    supplies = toners;
    return HResult::Ok;
  }
};

void ExpectRows(const std::vector<Row>& rows, const std::vector<Row>& wanted) {
  for (const Row& one : wanted) {
    EXPECT_TRUE(std::ranges::any_of(rows, [&](const Row& row) {
      return row.label == one.label && row.value == one.value && row.remark.starts_with(one.remark);
    })) << testing::PrintToString(one.label + L" = " + one.value);
  }
}

TEST(IdentityPage, SaysWhatWasReadAndWhyTheRestWasNot) {
  TalkingPrinter printer("MFG:Velnora; MDL:RV-1;CMD:PJL, ZOLT,RDS,EXT,SBXOFF,CI_12,FOO\r;");
  printer.serialNumber = "MPS-MODE";
  ExpectRows(ReadIdentity(printer, {}, {}).rows, {{L"Model", L"", L"A blank stands before the key"},
                                                  {L"Class", L"", L"The device ID does not tell it."},
                                                  {L"Keyword", L" ZOLT", L"Does not count: a blank"},
                                                  {L"Keyword", L"RDS", L"Serves its own report document."},
                                                  {L"Keyword", L"CI_12", L"Country index 12"},
                                                  {L"Keyword", L"FOO ", L"Not used"},
                                                  {L"Keyword", L"B", L"Not used"},  // of the extended one
                                                  {L"Serial number", L"MPS-MODE", L"No serial number: the printer"},
                                                  {L"Firmware version", L"", L"The printer does not tell it."},
                                                  {L"Installed on", L"", L"Not offered over the network."},
                                                  {L"Product protection", L"off", L"The printer goes on"}});
}

TEST(IdentityPage, SaysWhyThePrinterIsSilent) {
  struct Case {
    PortKind kind;
    Reachability reachability;
    std::optional<std::string> serialNumber;
    const wchar_t* words;
  };
  for (const Case& row : {Case{PortKind::TCPIP, Reachability::NoName, {}, L"leads to no address"},
                          Case{PortKind::WSD, Reachability::Silent, {}, L"switched off"},
                          Case{PortKind::TCPIP, Reachability::Answers, {}, L"by SNMP with the community \"c\""},
                          Case{PortKind::TCPIP, Reachability::Silent, "SN", L"tells no device ID"},
                          Case{PortKind::USB, Reachability::Answers, {}, L"unplugged"}}) {
    TalkingPrinter printer("");
    printer.result = HResult::Fail;
    printer.serialNumber = row.serialNumber;
    const Identity identity =
        ReadIdentity(printer, {row.kind, L"10.0.0.7", L"c"}, [&](auto&) { return row.reachability; });
    EXPECT_FALSE(identity.opened);
    EXPECT_NE(identity.rows.at(0).remark.find(row.words), std::wstring::npos) << row.words;
  }
}

TEST(SuppliesPage, TonersAsGaugesAndCodesInWords) {
  TalkingPrinter printer("");
  printer.toners = {{SupplyKind::Cyan, {{SupplyAttribute::Level, "73"}, {SupplyAttribute::VendorName, "V"}}},
                    {SupplyKind::Black, {{SupplyAttribute::Level, "-3"}}},
                    {SupplyKind::Yellow, {{SupplyAttribute::Level, "170"}}}};
  printer.counters = {0xFFFFFFFE, 12};
  const Supplies supplies = ReadSupplies(printer);
  EXPECT_EQ(supplies.gauges, (std::vector<Gauge>{{TonerColour::Cyan, 73, L"73 %"},
                                                 {TonerColour::Black, {}, L"some left"},
                                                 {TonerColour::Yellow, {}, L"no percentage: 170"}}));
  ExpectRows(supplies.rows, {{L"Cyan, vendor", L"V", L""},
                             {L"Black toner", L"some left", L"The printer's code -3."},
                             {L"Largest counter", L"-2", L"A code"},
                             {L"Supply unit", L"", L"Not offered over the network."}});
}

}  // namespace
}  // namespace zt
