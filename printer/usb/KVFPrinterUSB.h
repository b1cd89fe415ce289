#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Clock.h"
#include "KVFPrinter.h"
#include "PortContention.h"
#include "USBBulkIO.h"
#include "USBControl.h"

namespace zt {

// USBServices is what a USB printer needs of the computer that it is plugged into.
struct USBServices {
  // Open the printer at a device path: for requests only, or for its bulk pipes, which nobody else may have open. Null
  // on failure.
  std::function<std::unique_ptr<USBControl>(const std::wstring& devicePath)> openControl;
  std::function<std::unique_ptr<USBBulkIO>(const std::wstring& devicePath)> openBulk;

  // Loads the device-monitor library; nothing where it is not installed.
  std::function<std::optional<DeviceMonitor>()> loadDeviceMonitor;

  // Counts the jobs of a queue; negative when that is not possible.
  std::function<std::int32_t(const std::wstring& queueName)> countJobs;

  Pause pause;
};

// KVFPrinterUSB is a printer at a local USB port. Single data come by vendor requests on endpoint 0, the report
// documents over the bulk pipes. Print jobs use the same pipes: documents are read under the lock of the device-monitor
// library or, where it is not installed, only while the queue holds no job.
class KVFPrinterUSB : public KVFPrinter {
 public:
  KVFPrinterUSB(std::wstring devicePath, USBServices services);

  HResult Open() override;
  HResult GetStatusBlock(StatusBlock& status) override;
  HResult GetPortAddress(std::wstring& address) override;
  HResult GetFirmwareVersion(std::string& version) override;
  HResult GetSupplyLevels(std::vector<SupplyEntry>& supplies) override;
  HResult GetDeviceID(std::string& deviceID) override;
  HResult GetPageCounters(std::uint32_t& largest, std::uint32_t& total) override;
  HResult GetExtendedDeviceID(std::string& extendedID) override;
  HResult SetProtection(bool on) override;
  bool IsUSB() const override { return true; }

 private:
  HResult ReadSerialNumber(std::string& serialNumber) override;
  HResult CollectZOLT(ZOLTInformation& record, Codes& codes) override;
  HResult CollectPPA(PPAInformation& record, Codes& codes) override;

  // OpenControl opens the printer for requests; null, with a debug text, on failure.
  std::unique_ptr<USBControl> OpenControl() const;

  // Ask sends a request and returns the reply as text; nothing on failure.
  static std::optional<std::string> Ask(USBControl& control, const USBRequest& request);
  std::optional<std::string> Ask(const USBRequest& request) const;

  HResult ReadStatus(USBStatus& status) const;

  // MergeExtendedID reads the extended device ID into the device ID, if it can be read.
  void MergeExtendedID();

  // WakeSequence wakes a sleeping printer, in six attempts at most. One that stays asleep or does not answer is read
  // all the same.
  void WakeSequence();

  // LockPort makes sure that no print job uses the pipes as long as `lock` lives. It returns the code of why it can't,
  // and an empty text when it can.
  std::string_view LockPort(std::unique_ptr<PortContention>& lock) const;

  std::wstring devicePath_;
  USBServices services_;
};

}  // namespace zt
