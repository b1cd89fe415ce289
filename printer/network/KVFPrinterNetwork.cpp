#include "KVFPrinterNetwork.h"

#include <algorithm>
#include <utility>

#include "Codes.h"
#include "PPAInformation.h"
#include "Text.h"
#include "Trace.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

// Printer MIB (RFC 3805).
constexpr const char* kSupplyTypes = "1.3.6.1.2.1.43.11.1.1.5";
constexpr const char* kSupplyMaxima = "1.3.6.1.2.1.43.11.1.1.8";
constexpr const char* kSupplyLevels = "1.3.6.1.2.1.43.11.1.1.9";
constexpr const char* kSerialNumber = "1.3.6.1.2.1.43.5.1.1.17.1";

// The IEEE 1284 device ID: first the standard object (PWG port monitor MIB), then the maker's own.
constexpr const char* kDeviceIDs[] = {"1.3.6.1.4.1.2699.1.2.1.2.1.1.3.1", "1.3.6.1.4.1.53017.11.5.1.1.1.26.0"};

// The maker's objects.
constexpr const char* kStatusBlock = "1.3.6.1.4.1.53017.11.5.1.1.9.15.0";
constexpr const char* kUnitTTime = "1.3.6.1.4.1.53017.11.5.11.53.11.1.1.0";
constexpr const char* kUnitIBL = "1.3.6.1.4.1.53017.11.5.11.53.11.1.2.0";
constexpr const char* kInstalledDate = "1.3.6.1.4.1.53017.11.5.11.53.31.1.6.0";
constexpr const char* kFirmwareVersion = "1.3.6.1.4.1.53017.11.5.11.53.31.1.7.0";
constexpr const char* kExtendedDeviceID = "1.3.6.1.4.1.53017.11.5.11.53.33.4.1.2";
constexpr const char* kTonerColors = "1.3.6.1.4.1.53017.11.5.11.53.61.5.2.1.2";
constexpr const char* kTonerVendors = "1.3.6.1.4.1.53017.11.5.11.53.61.5.2.1.5";
constexpr const char* kTonerSuppliers = "1.3.6.1.4.1.53017.11.5.11.53.61.5.2.1.6";
constexpr const char* kTonerSerials = "1.3.6.1.4.1.53017.11.5.11.53.61.5.2.1.7";
constexpr const char* kTonerDates = "1.3.6.1.4.1.53017.11.5.11.53.61.5.2.1.10";
constexpr const char* kTonerTotals = "1.3.6.1.4.1.53017.11.5.11.53.61.5.2.1.18";
constexpr const char* kTonerModels = "1.3.6.1.4.1.53017.11.5.11.53.61.5.2.1.19";
constexpr const char* kTonerMaxima = "1.3.6.1.4.1.53017.11.5.11.53.61.5.2.1.21";

constexpr HResult OkOrFail(bool succeeded) { return succeeded ? HResult::Ok : HResult::Fail; }

const std::string* FindAttribute(const SupplyEntry& entry, SupplyAttribute attribute) {
  const auto found = entry.attributes.find(attribute);
  return found == entry.attributes.end() ? nullptr : &found->second;
}

TonerRecord TonerOf(const SupplyEntry& entry) {
  TonerRecord toner(ColourOf(entry.kind));
  if (const std::string* text = FindAttribute(entry, SupplyAttribute::Level)) {
    // A negative code is no percentage: as an unsigned number it is above 100, which the record stores as empty text.
    toner.SetLevel(static_cast<std::uint32_t>(ReadLeadingDecimal(*text)));
  }
  if (const std::string* text = FindAttribute(entry, SupplyAttribute::VendorName)) toner.SetVendorName(*text);
  if (const std::string* text = FindAttribute(entry, SupplyAttribute::ModelID)) toner.SetModelID(*text);
  if (const std::string* text = FindAttribute(entry, SupplyAttribute::SupplierID)) toner.SetSupplierID(*text);
  if (const std::string* text = FindAttribute(entry, SupplyAttribute::SerialNumber)) toner.SetSerialNumber(*text);
  if (const std::string* text = FindAttribute(entry, SupplyAttribute::InstalledDate)) toner.SetInstalledDate(*text);
  return toner;
}

bool IsColor(const SupplyEntry& entry) { return entry.kind != SupplyKind::Black; }

}  // namespace

KVFPrinterNetwork::KVFPrinterNetwork(std::wstring address, FetchDocument fetch)
    : address_(std::move(address)), fetch_(std::move(fetch)) {}

void KVFPrinterNetwork::SetGate(ExchangeGate gate) {
  fetch_ = [gate, fetch = std::move(fetch_)](const std::string& url, std::string& document) {
    return IsOpen(gate) && fetch(url, document);
  };
  snmp_.SetGate(std::move(gate));
}

HResult KVFPrinterNetwork::Open() {
  std::string text;
  if (!snmp_.Initialize(ToNarrow(address_))) return HResult::Fail;
  if (const HResult result = GetDeviceID(text); !Succeeded(result)) return result;
  AdoptDeviceID(text);
  if (HasCommand(deviceID_, kExtendedIDCommand) && Succeeded(GetExtendedDeviceID(text))) {
    MergeExtendedDeviceID(text, deviceID_);
  }
  return HResult::Ok;
}

HResult KVFPrinterNetwork::GetStatusBlock(StatusBlock& status) {
  std::string text;
  if (!snmp_.GetBytes(kStatusBlock, text)) return HResult::Fail;
  if (text.size() == status.bytes.size()) {
    std::copy(text.begin(), text.end(), status.bytes.begin());
    status.valid = true;
  }
  return HResult::Ok;
}

HResult KVFPrinterNetwork::GetPortAddress(std::wstring& address) {
  address = address_;
  return HResult::Ok;
}

HResult KVFPrinterNetwork::GetFirmwareVersion(std::string& version) {
  return OkOrFail(snmp_.GetText(kFirmwareVersion, version));
}

HResult KVFPrinterNetwork::GetSupplyLevels(std::vector<SupplyEntry>& supplies) {
  Codes unread;
  return ReadToners(supplies, unread);
}

HResult KVFPrinterNetwork::GetSupplyUnitInfo(std::vector<SupplyEntry>& supplies) {
  SupplyEntry unit{SupplyKind::Unit, {}};
  std::int64_t number = 0;
  const bool hasIBL = snmp_.GetInteger(kUnitIBL, number);
  if (hasIBL) unit.attributes[SupplyAttribute::UnitIBL] = std::to_string(number);
  if (snmp_.GetInteger(kUnitTTime, number)) unit.attributes[SupplyAttribute::UnitTTime] = std::to_string(number);
  if (!unit.attributes.empty()) supplies.push_back(std::move(unit));
  return OkOrFail(hasIBL);
}

HResult KVFPrinterNetwork::CollectZOLT(ZOLTInformation& record, Codes& codes) {
  if (!HasCommand(deviceID_, kUsageDocumentCommand)) return AssembleRecord(record, codes);

  if (const HResult result = FetchUsageDocument(record, codes); !Succeeded(result)) return result;
  if (const HResult result = ReadIdentity(record, codes); !Succeeded(result)) return result;
  record.SetDocumentMode(true);
  return OkOrFail(record.ReadCountsAndSupplies(record.Document(), codes));
}

HResult KVFPrinterNetwork::CollectPPA(PPAInformation& record, Codes& codes) {
  if (HasCommand(deviceID_, kUsageDocumentCommand)) {
    if (const HResult result = FetchUsageDocument(record, codes); !Succeeded(result)) return result;
    const bool read =
        record.ReadXml(record.Document(), codes) && record.ReadCountsAndSupplies(record.Document(), codes);
    record.DropDocumentTree();
    return OkOrFail(read);
  }
  // Such a printer has no document; its record gets what the objects tell.
  std::string date;
  if (Succeeded(ReadInstalledDate(date, codes))) record.SetInstalledDate(date);
  std::vector<SupplyEntry> toners;
  ReadToners(toners, codes);
  for (const SupplyEntry& entry : toners) {
    TonerRecord toner(ColourOf(entry.kind));
    if (const std::string* text = FindAttribute(entry, SupplyAttribute::SerialNumber)) toner.SetSerialNumber(*text);
    record.AddToner(std::move(toner));
  }
  return HResult::Ok;
}

HResult KVFPrinterNetwork::GetDeviceID(std::string& deviceID) {
  std::optional<std::vector<std::optional<std::string>>> answer = snmp_.GetSeveral(kDeviceIDs);
  if (!answer) return HResult::Fail;
  for (std::optional<std::string>& found : *answer) {
    if (!found || found->empty()) continue;
    deviceID = *std::move(found);
    return HResult::Ok;
  }
  // The commonest end with printers of other makers; one that is switched off ends alike otherwise.
  ZT_TRACE(Warning, "printer answers without a device ID : " << address_);
  return HResult::Fail;
}

HResult KVFPrinterNetwork::GetPageCounters(std::uint32_t& largest, std::uint32_t& total) {
  std::vector<std::int64_t> maxima;
  std::vector<std::int64_t> totals;
  if (!snmp_.WalkIntegers(kTonerMaxima, maxima) || !snmp_.WalkIntegers(kTonerTotals, totals)) return HResult::Fail;
  if (maxima.size() != totals.size()) return HResult::Fail;
  // Where all are codes below 0 the largest is one, too: "unknown" must not become 0 pages.
  const auto highest = std::max_element(maxima.begin(), maxima.end());
  std::uint32_t sum = 0;
  for (const std::int64_t value : totals) sum += static_cast<std::uint32_t>(value);
  largest = highest == maxima.end() ? 0 : static_cast<std::uint32_t>(*highest);
  total = sum;
  return HResult::Ok;
}

HResult KVFPrinterNetwork::GetExtendedDeviceID(std::string& extendedID) {
  return OkOrFail(snmp_.WalkAndJoin(kExtendedDeviceID, extendedID));
}

HResult KVFPrinterNetwork::GetInstalledDate(std::string& date) {
  Codes unread;
  return ReadInstalledDate(date, unread);
}

HResult KVFPrinterNetwork::ReadSerialNumber(std::string& serialNumber) {
  return OkOrFail(snmp_.GetText(kSerialNumber, serialNumber));
}

HResult KVFPrinterNetwork::ReadToners(std::vector<SupplyEntry>& supplies, Codes& codes) {
  SupplyColumns columns;
  if (!WalkPublicTable(columns) || !HasPublicTable(columns)) {
    codes.Add("/no toner pub");
    return HResult::Fail;
  }
  if (!WalkPrivateTable(columns) || !HasPrivateTable(columns)) {
    codes.Add("/no toner prv");
    return HResult::Fail;
  }
  for (SupplyEntry& entry : ReadSupplies(columns, codes)) supplies.push_back(std::move(entry));
  return HResult::Ok;
}

HResult KVFPrinterNetwork::ReadInstalledDate(std::string& date, Codes& codes) {
  std::string value;
  if (!snmp_.GetBytes(kInstalledDate, value) || value.empty()) {
    codes.Add("/no instdate");
    return HResult::Fail;
  }
  std::optional<std::string> converted = ConvertDate(value);
  if (!converted) {
    codes.Add("/invalid instdate");
    return HResult::Fail;
  }
  date = *std::move(converted);
  return HResult::Ok;
}

bool KVFPrinterNetwork::WalkPublicTable(SupplyColumns& columns) {
  return snmp_.WalkIntegers(kSupplyTypes, columns.types) && snmp_.WalkIntegers(kSupplyMaxima, columns.maxima) &&
         snmp_.WalkIntegers(kSupplyLevels, columns.levels);
}

bool KVFPrinterNetwork::WalkPrivateTable(SupplyColumns& columns) {
  return snmp_.WalkIntegers(kTonerColors, columns.colors) && snmp_.WalkTexts(kTonerVendors, columns.vendors) &&
         snmp_.WalkTexts(kTonerSuppliers, columns.suppliers) && snmp_.WalkTexts(kTonerModels, columns.models) &&
         snmp_.WalkTexts(kTonerSerials, columns.serials) && snmp_.WalkBytes(kTonerDates, columns.dates);
}

HResult KVFPrinterNetwork::FetchUsageDocument(ReportRecord& record, Codes& codes) {
  if (!record.Document().Text().empty()) return HResult::Ok;
  const std::string address = ToNarrow(address_);
  const bool literalIPv6 = Target::isValidIPv6Address(address.c_str()) != 0;
  std::string document;
  if (!fetch_((literalIPv6 ? "http://[" + address + "]/" : "http://" + address + "/") + "rds/rds.xml", document)) {
    codes.Add("/xml error");
    return HResult::Fail;
  }
  record.SetDocument(std::move(document));
  return HResult::Ok;
}

HResult KVFPrinterNetwork::AssembleRecord(ZOLTInformation& record, Codes& codes) {
  // First what ends the collection, and costs one request at most: the tables cost dozens.
  if (const HResult result = ReadIdentity(record, codes); !Succeeded(result)) return result;

  std::vector<SupplyEntry> toners;
  ReadToners(toners, codes);
  for (const SupplyEntry& toner : toners) record.AddToner(TonerOf(toner));

  std::string text;
  if (Succeeded(GetFirmwareVersion(text))) {
    record.SetFirmwareVersion(text);
  } else {
    codes.Add("/fwv err");
  }

  std::uint32_t largest = 0;
  std::uint32_t total = 0;
  if (!Succeeded(GetPageCounters(largest, total))) {
    codes.Add("/no counters");
    return HResult::Fail;
  }
  record.SetTotalMonoCount(static_cast<std::int32_t>(total));
  // A printer without a coloured toner has no colour counter, though the maximum column carries a number.
  if (std::any_of(toners.begin(), toners.end(), IsColor)) {
    record.SetTotalColorCount(static_cast<std::int32_t>(largest));
  }

  AddUnitInfo(record, codes);
  if (Succeeded(ReadInstalledDate(text, codes))) record.SetInstalledDate(text);
  return HResult::Ok;
}

void KVFPrinterNetwork::AddUnitInfo(ZOLTInformation& record, Codes& codes) {
  std::vector<SupplyEntry> units;
  GetSupplyUnitInfo(units);
  const SupplyEntry unit = units.empty() ? SupplyEntry{SupplyKind::Unit, {}} : std::move(units.front());
  if (const std::string* ibl = FindAttribute(unit, SupplyAttribute::UnitIBL)) {
    record.SetIBL(*ibl);
  } else {
    codes.Add("/no ibl");
  }
  if (const std::string* ttime = FindAttribute(unit, SupplyAttribute::UnitTTime)) {
    record.SetTTime(*ttime);
  } else {
    codes.Add("/no ttime");
  }
}

}  // namespace zt
