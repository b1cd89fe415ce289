#include "IdentityPage.h"

#include <utility>

#include "Hex.h"
#include "Text.h"
#include "Words.h"

namespace zt {
namespace {

constexpr std::string_view kCountryPrefix = "CI_";

struct Keyword {
  std::string_view word;
  std::wstring_view meaning;
};
constexpr Keyword kKeywords[] = {
    {kZOLTCommand, L"Offers print-volume reporting."},
    {kUsageDocumentCommand, L"Serves its own report document."},
    {kExtendedIDCommand, L"Has an extended device ID."},
    {kFirmwareVersionCommand, L"Tells its firmware version over USB."},
    {kModeRequestCommand, L"May be asleep, and is woken over USB."},
    {"SBXON", L"Product protection is on."},
    {"SBXOFF", L"Product protection is off."},
    {"SBXOT", L"Product protection is in the state OT. A run leaves such a printer alone."},
};

using ReadText = HResult (KVFPrinter::*)(std::string& text);

Row TextRow(std::wstring label, KVFPrinter& printer, ReadText read, std::wstring_view failed) {
  std::string text;
  const HResult result = (printer.*read)(text);
  if (!Succeeded(result)) return {std::move(label), L"", WhyNotRead(result, printer.IsUSB(), failed)};
  return {std::move(label), Shown(text), text.empty() ? L"The printer answers with an empty text." : L""};
}

Row PartRow(std::wstring label, std::string_view part) {
  return {std::move(label), Shown(part), part.empty() ? L"The device ID does not tell it." : L""};
}

Row ModelRow(const PrinterDeviceID& id) {
  Row row = PartRow(L"Model", id.model);
  if (!id.model.empty()) return row;
  row.remark = id.raw.find("; MDL:") != std::string::npos || id.raw.find("; MODEL:") != std::string::npos
                   ? L"A blank stands before the key of the model: the key counts only right behind a semicolon."
                   : L"The device ID does not tell it. Without a model there is no report.";
  return row;
}

Row KeywordRow(std::string_view word) {
  Row row{L"Keyword", Shown(word), MeaningOf(word)};
  if (!row.remark.empty()) return row;
  const std::string_view bare = Trim(word);
  row.remark = bare != word && !MeaningOf(bare).empty() ? L"Does not count: a blank stands before or behind the word."
                                                        : L"Not used by the agent.";
  return row;
}

Row SerialNumberRow(KVFPrinter& printer) {
  Row row = TextRow(L"Serial number", printer, &KVFPrinter::GetSerialNumber,
                    L"The printer does not tell it. Without it there is no report.");
  if (row.value == L"MPS-MODE") row.remark = L"No serial number: the printer is asleep. A run ends here.";
  return row;
}

Row StatusRow(KVFPrinter& printer) {
  Row row{L"Status", L"", L""};
  StatusBlock status;
  const HResult result = printer.GetStatusBlock(status);
  if (!Succeeded(result)) {
    row.remark = WhyNotRead(result, printer.IsUSB(), L"The printer does not tell it.");
  } else if (!status.valid) {
    row.remark = L"The printer tells a status of another length than eight bytes.";
  } else {
    std::string bytes;
    for (const std::uint8_t byte : status.bytes) {
      if (!bytes.empty()) bytes += ' ';
      AppendHex(bytes, byte);
    }
    row.value = Shown(bytes);
    row.remark = L"The printer's own status, eight bytes.";
  }
  return row;
}

Row StateRow(ProtectionState state) { return {L"Product protection", StateText(state), StateRemark(state)}; }

// The device ID as it was sent, its parts and its keywords.
void AddDeviceID(KVFPrinter& printer, std::vector<Row>& rows) {
  rows.push_back(TextRow(L"Device ID", printer, &KVFPrinter::GetDeviceID, L"The printer no longer tells it."));
  PrinterDeviceID id;
  if (std::string text; Succeeded(printer.GetDeviceID(text))) ParseDeviceID(text, id);
  if (HasCommand(id, kExtendedIDCommand)) {
    rows.push_back(TextRow(L"Extended device ID", printer, &KVFPrinter::GetExtendedDeviceID,
                           L"The printer announces one by the word EXT, but does not tell it."));
    if (std::string text; Succeeded(printer.GetExtendedDeviceID(text))) MergeExtendedDeviceID(text, id);
  }
  rows.push_back(PartRow(L"Manufacturer", id.manufacturer));
  rows.push_back(ModelRow(id));
  rows.push_back(PartRow(L"Class", id.deviceClass));
  rows.push_back(PartRow(L"Class information", id.classInfo));
  rows.push_back(PartRow(L"Command set", id.commandSet));
  for (const std::string_view word : SplitAny(id.commandSet, ",")) rows.push_back(KeywordRow(word));
}

std::wstring WhyClosed(KVFPrinter& printer, const PrinterTarget& target, const Reach& reach) {
  const bool network = target.kind == PortKind::TCPIP || target.kind == PortKind::WSD;
  if (!network) return WhySilent(target, Reachability::Unknown);
  if (std::string text; Succeeded(printer.GetSerialNumber(text))) {
    return L"The device answers by SNMP, but tells no device ID. It is no printer, or one that cannot be reported.";
  }
  return WhySilent(target, reach ? reach(target.address) : Reachability::Unknown);
}

}  // namespace

std::wstring MeaningOf(std::string_view keyword) {
  for (const Keyword& known : kKeywords) {
    if (keyword == known.word) return std::wstring(known.meaning);
  }
  const std::size_t country = keyword.find(kCountryPrefix);
  if (country == std::string_view::npos) return {};
  return L"Country index " + Shown(keyword.substr(country + kCountryPrefix.size())) +
         L": the country that the printer was made for.";
}

std::wstring WhySilent(const PrinterTarget& target, Reachability reachability) {
  const std::wstring& address = target.address;
  if (target.kind == PortKind::None) return L"The port leads to no printer.";
  if (target.kind == PortKind::USB) {
    return L"The USB printer does not answer. It is switched off, unplugged, or in use by another program.";
  }
  if (address.empty()) return L"The port has no address.";
  switch (reachability) {
    case Reachability::NoName:
      return L"The name " + address + L" leads to no address. The name is wrong, or the name server does not know it.";
    case Reachability::Silent:
      return L"Nothing answers at " + address +
             L". The printer is switched off, is not on the network, or has another address now.";
    case Reachability::Answers:
      return L"A device is there at " + address + L", but does not answer by SNMP with the community \"" +
             (target.community.empty() ? L"public" : target.community) +
             L"\". The printer has another community, or SNMP is switched off or blocked.";
    case Reachability::Unknown:
      break;
  }
  return L"The printer at " + address + L" does not answer by SNMP.";
}

Identity ReadIdentity(KVFPrinter& printer, const PrinterTarget& target, const Reach& reach) {
  Identity identity;
  identity.opened = Succeeded(printer.Open());
  if (!identity.opened) {
    identity.rows = {{L"Printer", L"does not answer", WhyClosed(printer, target, reach)}};
    return identity;
  }
  AddDeviceID(printer, identity.rows);
  identity.rows.push_back(TextRow(L"Model family", printer, &KVFPrinter::GetModelFamilyName,
                                  L"The model's name fits none of the known families."));
  const bool offered = printer.IsZOLTSupported() == HResult::Ok;
  identity.rows.push_back({L"Print-volume reports", offered ? L"offered" : L"not offered",
                           offered ? L"" : L"The command set lacks the word ZOLT. A run ends here."});
  identity.rows.push_back(SerialNumberRow(printer));
  identity.rows.push_back(TextRow(L"Firmware version", printer, &KVFPrinter::GetFirmwareVersion,
                                  printer.IsUSB() ? L"The printer does not tell it: over USB it needs the word FWV."
                                                  : L"The printer does not tell it."));
  identity.rows.push_back(TextRow(L"Installed on", printer, &KVFPrinter::GetInstalledDate,
                                  L"The printer does not tell the day, or tells one that is none."));
  identity.rows.push_back(TextRow(L"Country index", printer, &KVFPrinter::GetCountryIndex,
                                  L"No word of the command set holds CI_. Without it nobody is asked to agree."));
  ProtectionState state{};
  if (Succeeded(printer.GetSBXState(&state))) identity.rows.push_back(StateRow(state));
  identity.rows.push_back(StatusRow(printer));
  return identity;
}

Identity ReadIdentity(IZOLTDataProvider& provider) {
  Identity identity;
  identity.opened = provider.Initialize(false);
  if (!identity.opened) return identity;
  const auto add = [&](std::wstring label, bool (IZOLTDataProvider::*read)(std::string&)) {
    if (std::string text; (provider.*read)(text)) identity.rows.push_back({std::move(label), Shown(text), L""});
  };
  identity.rows.push_back({L"Address", Shown(provider.GetPrinterAddress()), L"Canned data: no printer is asked."});
  add(L"Model", &IZOLTDataProvider::GetModelName);
  add(L"Serial number", &IZOLTDataProvider::GetSerialNumber);
  add(L"Country index", &IZOLTDataProvider::GetCountryIndex);
  ProtectionState state{};
  if (provider.CheckSBXSupport(&state)) identity.rows.push_back(StateRow(state));
  return identity;
}

}  // namespace zt
