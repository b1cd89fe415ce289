#include <gtest/gtest.h>

#include <algorithm>

#include "FakePrinter.h"
#include "IdentityPage.h"
#include "SuppliesPage.h"
#include "VirtualZOLTDataProvider.h"

namespace zt {
namespace {

// TalkingPrinter also tells its device ID and its toners.
class TalkingPrinter : public FakePrinter {
 public:
  explicit TalkingPrinter(std::string id) : FakePrinter(id), deviceID(std::move(id)) {}

  std::string deviceID;
  std::optional<std::vector<SupplyEntry>> toners;

  HResult GetDeviceID(std::string& text) override {
    text = deviceID;
    return HResult::Ok;
  }
  HResult GetSupplyLevels(std::vector<SupplyEntry>& supplies) override {
    if (toners) supplies = *toners;
    return toners ? HResult::Ok : HResult::Fail;
  }
};

bool Has(const std::vector<Row>& rows, const Row& wanted) {
  return std::ranges::any_of(rows, [&](const Row& row) {
    return row.label == wanted.label && row.value == wanted.value && row.remark.starts_with(wanted.remark);
  });
}

const PrinterTarget kNetwork = {.kind = PortKind::TCPIP, .address = L"10.0.0.7", .community = L"c"};

TEST(IdentityPage, SaysWhatWasReadAndWhyTheRestWasNot) {
  TalkingPrinter printer("MFG:Velnora; MDL:RV-1;CMD:PJL, ZOLT,RDS,EXT,SBXOFF,CI_12,FOO\r;");
  printer.serialNumber = "MPS-MODE";
  const Identity identity = ReadIdentity(printer, kNetwork, {});
  EXPECT_TRUE(identity.opened);
  for (const Row& row : std::vector<Row>{
           {L"Extended device ID", L"CMD:A,B;", L""},
           {L"Manufacturer", L"Velnora", L""},
           {L"Model", L"", L"A blank stands before the key"},
           {L"Class", L"", L"The device ID does not tell it."},
           {L"Keyword", L" ZOLT", L"Does not count: a blank"},
           {L"Keyword", L"RDS", L"Serves its own report document."},
           {L"Keyword", L"CI_12", L"Country index 12"},
           {L"Keyword", L"FOO ", L"Not used"},
           {L"Keyword", L"B", L"Not used"},  // of the extended one
           {L"Model family", L"", L"The model's name fits none"},
           {L"Print-volume reports", L"not offered", L"The command set lacks"},
           {L"Serial number", L"MPS-MODE", L"No serial number: the printer is asleep."},
           {L"Firmware version", L"", L"The printer does not tell it."},
           {L"Installed on", L"", L"Not offered over the network."},
           {L"Country index", L"12", L""},
           {L"Product protection", L"off", L"The printer goes on"},
           {L"Status", L"", L"The printer does not tell it."},
       }) {
    EXPECT_TRUE(Has(identity.rows, row)) << testing::PrintToString(row.label + L" = " + row.value);
  }
  printer.usb = true;
  EXPECT_TRUE(Has(ReadIdentity(printer, {}, {}).rows, {L"Installed on", L"", L"Not offered over USB."}));
}

TEST(IdentityPage, SaysWhyThePrinterIsSilent) {
  struct Silent {
    PrinterTarget target;
    Reachability reachability;
    bool serialNumber;
    const wchar_t* words;
  };
  const PrinterTarget usb = {.kind = PortKind::USB, .address = L"path", .community = {}};
  for (const Silent& row : {Silent{kNetwork, Reachability::NoName, false, L"leads to no address"},
                            Silent{kNetwork, Reachability::Silent, false, L"switched off"},
                            Silent{kNetwork, Reachability::Answers, false, L"by SNMP with the community \"c\""},
                            Silent{kNetwork, Reachability::Silent, true, L"tells no device ID"},
                            Silent{usb, Reachability::Answers, false, L"unplugged"},
                            Silent{{}, Reachability::Answers, false, L"leads to no printer"}}) {
    TalkingPrinter printer("");
    printer.result = HResult::Fail;
    if (!row.serialNumber) printer.serialNumber.reset();
    const Identity identity = ReadIdentity(printer, row.target, [&](const std::wstring&) { return row.reachability; });
    EXPECT_FALSE(identity.opened);
    EXPECT_NE(identity.rows.at(0).remark.find(row.words), std::wstring::npos) << row.words;
  }
}

TEST(SuppliesPage, TonersAsGaugesAndCodesInWords) {
  TalkingPrinter printer("");
  printer.toners = {{SupplyKind::Cyan, {{SupplyAttribute::Level, "73"}, {SupplyAttribute::VendorName, "V"}}},
                    {SupplyKind::Black, {{SupplyAttribute::Level, "-3"}}},
                    {SupplyKind::Yellow, {{SupplyAttribute::Level, "170"}}},
                    {SupplyKind::Magenta, {}}};
  printer.counters = {0xFFFFFFFE, 12};
  const Supplies supplies = ReadSupplies(printer);
  EXPECT_EQ(supplies.gauges, (std::vector<Gauge>{{TonerColour::Cyan, 73, L"73 %"},
                                                 {TonerColour::Black, std::nullopt, L"some left"},
                                                 {TonerColour::Yellow, std::nullopt, L"no percentage: 170"},
                                                 {TonerColour::Magenta, std::nullopt, L"not told"}}));
  EXPECT_TRUE(Has(supplies.rows, {L"Cyan, vendor", L"V", L""}));
  EXPECT_TRUE(Has(supplies.rows, {L"Black toner", L"some left", L"The printer's code -3."}));
  EXPECT_TRUE(Has(supplies.rows, {L"Largest counter", L"-2", L"A code"}));
  EXPECT_TRUE(Has(supplies.rows, {L"Supply unit", L"", L"Not offered over the network."}));
  EXPECT_TRUE(Has(ReadSupplies(*std::make_unique<TalkingPrinter>("")).rows, {L"Toners", L"", L"The printer does not"}));
}

TEST(SuppliesPage, TheVirtualPrinterHasThePages) {
  VirtualZOLTDataProvider provider(L"Q");
  EXPECT_TRUE(Has(ReadIdentity(provider).rows, {L"Serial number", L"VIRTUAL0001", L""}));
  const Supplies supplies = ReadSupplies(provider);
  ASSERT_EQ(supplies.gauges.size(), 4u);
  EXPECT_EQ(supplies.gauges[3], (Gauge{TonerColour::Black, 38, L"38 %"}));
  EXPECT_TRUE(Has(supplies.rows, {L"Supply unit, TTime", L"18250", L""}));
}

}  // namespace
}  // namespace zt
