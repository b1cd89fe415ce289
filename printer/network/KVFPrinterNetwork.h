#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "KVFPrinter.h"
#include "PrinterSNMPClient.h"
#include "SupplyReading.h"

namespace zt {

class ReportRecord;

// FetchDocument gets a document from a URL; false, the output untouched, without one.
using FetchDocument = std::function<bool(const std::string& url, std::string& document)>;

// KVFPrinterNetwork is a printer behind a network address. It is read by SNMP (the Printer MIB, RFC 3805, the PWG port
// monitor MIB and the maker's own objects); the usage document of a printer that has one comes from its web server.
class KVFPrinterNetwork : public KVFPrinter {
 public:
  // `address` is the host name or address of the queue's port. An empty one makes a printer that does not open.
  KVFPrinterNetwork(std::wstring address, FetchDocument fetch);

  // SetReadCommunity takes the SNMP community of the port; false, "public" stays, for one that SNMP can't use.
  bool SetReadCommunity(const std::string& community) { return snmp_.SetReadCommunity(community); }

  // SetGate sets what is asked before each exchange with the printer.
  void SetGate(ExchangeGate gate);

  HResult Open() override;
  HResult GetStatusBlock(StatusBlock& status) override;
  HResult GetPortAddress(std::wstring& address) override;
  HResult GetFirmwareVersion(std::string& version) override;
  HResult GetSupplyLevels(std::vector<SupplyEntry>& supplies) override;
  HResult GetSupplyUnitInfo(std::vector<SupplyEntry>& supplies) override;
  HResult GetDeviceID(std::string& deviceID) override;
  HResult GetPageCounters(std::uint32_t& largest, std::uint32_t& total) override;
  HResult GetExtendedDeviceID(std::string& extendedID) override;
  HResult GetInstalledDate(std::string& date) override;

 private:
  HResult ReadSerialNumber(std::string& serialNumber) override;
  HResult CollectZOLT(ZOLTInformation& record, Codes& codes) override;
  HResult CollectPPA(PPAInformation& record, Codes& codes) override;

  // ReadToners and ReadInstalledDate read what GetSupplyLevels and GetInstalledDate return, with a code for each gap.
  HResult ReadToners(std::vector<SupplyEntry>& supplies, Codes& codes);
  HResult ReadInstalledDate(std::string& date, Codes& codes);
  bool WalkPublicTable(SupplyColumns& columns);
  bool WalkPrivateTable(SupplyColumns& columns);

  // FetchUsageDocument gets the printer's own report document; one that the record holds already is not fetched again.
  HResult FetchUsageDocument(ReportRecord& record, Codes& codes);

  // AssembleRecord fills the record from single objects.
  HResult AssembleRecord(ZOLTInformation& record, Codes& codes);
  void AddUnitInfo(ZOLTInformation& record, Codes& codes);

  std::wstring address_;
  FetchDocument fetch_;
  PrinterSNMPClient snmp_;
};

}  // namespace zt
