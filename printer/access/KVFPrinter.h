#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "HResult.h"
#include "ModelFamily.h"
#include "PrinterDeviceID.h"
#include "SupplyEntry.h"

namespace zt {

class Codes;
class PPAInformation;
class ZOLTInformation;

// StatusBlock is the printer's own 8-byte status.
struct StatusBlock {
  std::array<std::uint8_t, 8> bytes{};
  bool valid = false;  // the printer delivered all of it
};

// KVFPrinter is the access to one printer. `Open` comes first: the other operations need the device ID that it reads.
// Results are Ok or a failure code, False where said. Outputs keep their content on failure; texts are in the ANSI code
// page.
class KVFPrinter {
 public:
  virtual ~KVFPrinter() = default;

  // Open reads and parses the device ID, the extended one included where the printer has it.
  virtual HResult Open() = 0;

  // GetStatusBlock reads the status. No caller in this program; part of the interface. Ok also for a printer that
  // answers one of another length, which stays out.
  virtual HResult GetStatusBlock(StatusBlock& status) = 0;

  // GetPortAddress returns the network address or the device path.
  virtual HResult GetPortAddress(std::wstring& address) = 0;

  // Unused keeps the place of an operation that no form implements: NotImplemented. No caller; the places of those
  // after it are part of the interface.
  virtual HResult Unused();

  // GetFirmwareVersion reads the version as the printer words it.
  virtual HResult GetFirmwareVersion(std::string& version) = 0;

  // GetSupplyLevels appends one entry per toner. No caller in this program; part of the interface: the records read
  // more than levels.
  virtual HResult GetSupplyLevels(std::vector<SupplyEntry>& supplies) = 0;

  // GetSupplyUnitInfo appends the entry of the supply unit.
  virtual HResult GetSupplyUnitInfo(std::vector<SupplyEntry>& supplies);

  // GetZOLTInformation fills the print-volume record, GetPPAInformation the product-protection record. Both append to
  // `errorText` the codes of what is missing or why they fail (see Codes); they never clear it.
  virtual HResult GetZOLTInformation(ZOLTInformation& record, std::string& errorText);
  virtual HResult GetPPAInformation(PPAInformation& record, std::string& errorText);

  // GetDeviceID reads the IEEE 1284 device ID, without its length prefix.
  virtual HResult GetDeviceID(std::string& deviceID) = 0;

  // GetSerialNumber returns the serial number without surrounding CR, LF and blanks. The printer is asked until it has
  // answered once.
  virtual HResult GetSerialNumber(std::string& serialNumber);

  // GetPageCounters reads the largest of the printer's counters and the total of what it counted. Negative codes that
  // the printer has in their place count modulo 2^32.
  virtual HResult GetPageCounters(std::uint32_t& largest, std::uint32_t& total) = 0;

  // GetCountryIndex returns the country index of the command set; Fail without one.
  virtual HResult GetCountryIndex(std::string& countryIndex);

  // GetExtendedDeviceID reads what the printer has to add to its device ID, in the same form.
  virtual HResult GetExtendedDeviceID(std::string& extendedID) = 0;

  // SetProtection switches the consumable protection by a vendor request; NotImplemented where there is none.
  virtual HResult SetProtection(bool on);

  // GetModelFamilyName returns "RV", "DWB", "PHT" or "PHZ"; Fail for an unknown family.
  virtual HResult GetModelFamilyName(std::string& name);

  // GetModelName returns the model; Fail when it is empty.
  virtual HResult GetModelName(std::string& model);

  // IsZOLTSupported returns Ok when the printer offers print-volume reporting, else False.
  virtual HResult IsZOLTSupported();

  // GetSBXState returns the protection state that the command set announces. Fail for null.
  virtual HResult GetSBXState(ProtectionState* state);

  // GetInstalledDate returns the day of installation, "YYYY-MM-DD".
  virtual HResult GetInstalledDate(std::string& date);

  // IsUSB reports whether the printer takes vendor requests over USB.
  virtual bool IsUSB() const { return false; }

  void SetQueueName(std::wstring name) { queueName_ = std::move(name); }
  const std::wstring& QueueName() const { return queueName_; }

  // The universal driver ("Meridian Print Driver") serves the queue.
  void SetUniversalDriver(bool universal) { universalDriver_ = universal; }
  bool IsUniversalDriver() const { return universalDriver_; }

 protected:
  // AdoptDeviceID parses the device ID and takes the model family from it.
  void AdoptDeviceID(std::string_view text);

  // ReadIdentity stores model, family name, country index and serial number in the record. A missing model or serial
  // number adds its code and fails; the other two may be missing.
  HResult ReadIdentity(ZOLTInformation& record, Codes& codes);

  ModelFamily family_ = ModelFamily::Unknown;
  PrinterDeviceID deviceID_;

 private:
  // ReadSerialNumber asks the printer for its serial number and returns the text as it came.
  virtual HResult ReadSerialNumber(std::string& serialNumber) = 0;

  // CollectZOLT and CollectPPA are the readings behind the two Get…Information.
  virtual HResult CollectZOLT(ZOLTInformation& record, Codes& codes) = 0;
  virtual HResult CollectPPA(PPAInformation& record, Codes& codes) = 0;

  std::wstring queueName_;
  bool universalDriver_ = false;
  std::optional<std::string> serialNumber_;
};

}  // namespace zt
