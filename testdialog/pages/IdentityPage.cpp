#include "IdentityPage.h"

#include "Hex.h"
#include "Joined.h"
#include "Text.h"
#include "Words.h"

namespace zt {
namespace {

constexpr std::string_view kCountryPrefix = "CI_";

struct Keyword {
  std::string_view word;
  Ascii meaning;
};
constexpr Keyword kKeywords[] = {
    {kZOLTCommand, "Offers print-volume reporting."},
    {kUsageDocumentCommand, "Serves its own report document."},
    {kExtendedIDCommand, "Has an extended device ID."},
    {kFirmwareVersionCommand, "Tells its firmware version over USB."},
    {kModeRequestCommand, "May be asleep, and is woken over USB."},
    {"SBXON", "Product protection is on."},
    {"SBXOFF", "Product protection is off."},
    {"SBXOT", "Product protection is in the state OT. A run leaves such a printer alone."},
};

using ReadText = HResult (KVFPrinter::*)(std::string& text);

void AddText(std::vector<Row>& rows, KVFPrinter& printer, Ascii label, ReadText read, Ascii failed) {
  std::string text;
  const HResult result = (printer.*read)(text);
  if (Succeeded(result)) {
    AddRow(rows, label, text, text.empty() ? Ascii("The printer answers with an empty text.") : Ascii(""));
  } else {
    AddRow(rows, label, "", WhyNotRead(result, printer.IsUSB(), failed));
  }
}

void AddPart(std::vector<Row>& rows, Ascii label, std::string_view part) {
  AddRow(rows, label, part, part.empty() ? Ascii("The device ID does not tell it.") : Ascii(""));
}

Ascii WhyNoModel(const PrinterDeviceID& id) {
  if (!id.model.empty()) return "";
  if (id.raw.find("; MDL:") != std::string::npos || id.raw.find("; MODEL:") != std::string::npos) {
    return "A blank stands before the key of the model: the key counts only right behind a semicolon.";
  }
  return "The device ID does not tell it. Without a model there is no report.";
}

void AddKeyword(std::vector<Row>& rows, std::string_view word) {
  Row& row = AddRow(rows, "Keyword", word);
  row.remark = MeaningOf(word);
  if (!row.remark.empty()) return;
  const std::string_view bare = Trim(word);
  const bool blank = bare != word && !MeaningOf(bare).empty();
  row.remark = Joined(
      {blank ? Ascii("Does not count: a blank stands before or behind the word.") : Ascii("Not used by the agent.")});
}

void AddSerialNumber(std::vector<Row>& rows, KVFPrinter& printer) {
  AddText(rows, printer, "Serial number", &KVFPrinter::GetSerialNumber,
          "The printer does not tell it. Without it there is no report.");
  if (Row& row = rows.back(); row.value == L"MPS-MODE") {
    row.remark = Joined({"No serial number: the printer is asleep. A run ends here."});
  }
}

void AddStatus(std::vector<Row>& rows, KVFPrinter& printer) {
  StatusBlock status;
  const HResult result = printer.GetStatusBlock(status);
  std::string bytes;
  Ascii remark = "The printer's own status, eight bytes.";
  if (!Succeeded(result)) {
    remark = WhyNotRead(result, printer.IsUSB(), "The printer does not tell it.");
  } else if (!status.valid) {
    remark = "The printer tells a status of another length than eight bytes.";
  } else {
    for (const std::uint8_t byte : status.bytes) {
      if (!bytes.empty()) bytes += ' ';
      AppendHex(bytes, byte);
    }
  }
  AddRow(rows, "Status", bytes, remark);
}

void AddState(std::vector<Row>& rows, ProtectionState state) {
  AddRow(rows, "Product protection", StateText(state), StateRemark(state));
}

// The device ID as it was sent, its parts and its keywords.
void AddDeviceID(std::vector<Row>& rows, KVFPrinter& printer) {
  AddText(rows, printer, "Device ID", &KVFPrinter::GetDeviceID, "The printer no longer tells it.");
  PrinterDeviceID id;
  if (std::string text; Succeeded(printer.GetDeviceID(text))) ParseDeviceID(text, id);
  if (HasCommand(id, kExtendedIDCommand)) {
    AddText(rows, printer, "Extended device ID", &KVFPrinter::GetExtendedDeviceID,
            "The printer announces one by the word EXT, but does not tell it.");
    if (std::string text; Succeeded(printer.GetExtendedDeviceID(text))) MergeExtendedDeviceID(text, id);
  }
  AddPart(rows, "Manufacturer", id.manufacturer);
  AddRow(rows, "Model", id.model, WhyNoModel(id));
  AddPart(rows, "Class", id.deviceClass);
  AddPart(rows, "Class information", id.classInfo);
  AddPart(rows, "Command set", id.commandSet);
  for (const std::string_view word : SplitAny(id.commandSet, ",")) AddKeyword(rows, word);
}

std::wstring WhyClosed(KVFPrinter& printer, const PrinterTarget& target, const Reach& reach) {
  const bool network = target.kind == PortKind::TCPIP || target.kind == PortKind::WSD;
  if (!network) return WhySilent(target, Reachability::Unknown);
  if (std::string text; Succeeded(printer.GetSerialNumber(text))) {
    return Joined(
        {"The device answers by SNMP, but tells no device ID. It is no printer, or one that cannot be reported."});
  }
  return WhySilent(target, reach ? reach(target.address) : Reachability::Unknown);
}

}  // namespace

std::wstring MeaningOf(std::string_view keyword) {
  for (const Keyword& known : kKeywords) {
    if (keyword == known.word) return Joined({known.meaning});
  }
  const std::size_t country = keyword.find(kCountryPrefix);
  if (country == std::string_view::npos) return {};
  return Joined({"Country index ", keyword.substr(country + kCountryPrefix.size()),
                 ": the country that the printer was made for."});
}

std::wstring WhySilent(const PrinterTarget& target, Reachability reachability) {
  const std::wstring& address = target.address;
  if (target.kind == PortKind::None) return Joined({"The port leads to no printer."});
  if (target.kind == PortKind::USB) {
    return Joined({"The USB printer does not answer. It is switched off, unplugged, or in use by another program."});
  }
  if (address.empty()) return Joined({"The port has no address."});
  switch (reachability) {
    case Reachability::NoName:
      return Joined(
          {"The name ", address, " leads to no address. The name is wrong, or the name server does not know it."});
    case Reachability::Silent:
      return Joined({"Nothing answers at ", address,
                     ". The printer is switched off, is not on the network, or has another address now."});
    case Reachability::Answers:
      return Joined({"A device is there at ", address, ", but does not answer by SNMP with the community \"",
                     target.community.empty() ? Piece("public") : Piece(target.community),
                     "\". The printer has another community, or SNMP is switched off or blocked."});
    case Reachability::Unknown:
      break;
  }
  return Joined({"The printer at ", address, " does not answer by SNMP."});
}

Identity ReadIdentity(KVFPrinter& printer, const PrinterTarget& target, const Reach& reach) {
  Identity identity;
  std::vector<Row>& rows = identity.rows;
  identity.opened = Succeeded(printer.Open());
  if (!identity.opened) {
    AddRow(rows, "Printer", "does not answer").remark = WhyClosed(printer, target, reach);
    return identity;
  }
  AddDeviceID(rows, printer);
  AddText(rows, printer, "Model family", &KVFPrinter::GetModelFamilyName,
          "The model's name fits none of the known families.");
  if (printer.IsZOLTSupported() == HResult::Ok) {
    AddRow(rows, "Print-volume reports", "offered");
  } else {
    AddRow(rows, "Print-volume reports", "not offered", "The command set lacks the word ZOLT. A run ends here.");
  }
  AddSerialNumber(rows, printer);
  AddText(rows, printer, "Firmware version", &KVFPrinter::GetFirmwareVersion,
          printer.IsUSB() ? Ascii("The printer does not tell it: over USB it needs the word FWV.")
                          : Ascii("The printer does not tell it."));
  AddText(rows, printer, "Installed on", &KVFPrinter::GetInstalledDate,
          "The printer does not tell the day, or tells one that is none.");
  AddText(rows, printer, "Country index", &KVFPrinter::GetCountryIndex,
          "No word of the command set holds CI_. Without it nobody is asked to agree.");
  ProtectionState state{};
  if (Succeeded(printer.GetSBXState(&state))) AddState(rows, state);
  AddStatus(rows, printer);
  return identity;
}

Identity ReadIdentity(IZOLTDataProvider& provider) {
  Identity identity;
  identity.opened = provider.Initialize(false);
  if (!identity.opened) return identity;
  std::vector<Row>& rows = identity.rows;
  AddRow(rows, "Address", provider.GetPrinterAddress(), "Canned data: no printer is asked.");
  const auto add = [&](Ascii label, bool (IZOLTDataProvider::*read)(std::string&)) {
    if (std::string text; (provider.*read)(text)) AddRow(rows, label, text);
  };
  add("Model", &IZOLTDataProvider::GetModelName);
  add("Serial number", &IZOLTDataProvider::GetSerialNumber);
  add("Country index", &IZOLTDataProvider::GetCountryIndex);
  ProtectionState state{};
  if (provider.CheckSBXSupport(&state)) AddState(rows, state);
  return identity;
}

}  // namespace zt
