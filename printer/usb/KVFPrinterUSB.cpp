#include "KVFPrinterUSB.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Codes.h"
#include "PPAInformation.h"
#include "Trace.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

constexpr std::size_t kLongestReply = 255;
constexpr std::size_t kLongestDeviceID = 1024;
constexpr int kWakePasses = 6;
constexpr std::uint32_t kWakePause = 1000;
constexpr int kDocumentAttempts = 3;
constexpr std::uint32_t kDocumentPause = 500;

// Codes of a port that is in use.
constexpr std::string_view kJobPending = "/job pending";
constexpr std::string_view kLockFailed = "/lock failed";

}  // namespace

KVFPrinterUSB::KVFPrinterUSB(std::wstring devicePath, USBServices services)
    : devicePath_(std::move(devicePath)), services_(std::move(services)) {}

HResult KVFPrinterUSB::Open() {
  std::string text;
  if (!Succeeded(GetDeviceID(text))) {
    ZT_TRACE(Information, "can't get device ID");
    return HResult::Fail;
  }
  AdoptDeviceID(text);
  if (HasCommand(deviceID_, kExtendedIDCommand)) {
    MergeExtendedID();
  } else {
    ZT_TRACE(Information, "EXT is not supported");
  }
  if (HasCommand(deviceID_, kModeRequestCommand)) {
    WakeSequence();
  } else {
    ZT_TRACE(Information, "MPS not supported");
  }
  return HResult::Ok;
}

HResult KVFPrinterUSB::GetStatusBlock(StatusBlock& status) {
  const HResult result = ReadStatus(status.bytes);
  if (Succeeded(result)) status.valid = true;
  return result;
}

HResult KVFPrinterUSB::GetPortAddress(std::wstring& address) {
  address = devicePath_;
  return HResult::Ok;
}

HResult KVFPrinterUSB::GetFirmwareVersion(std::string& version) {
  if (!HasCommand(deviceID_, kFirmwareVersionCommand)) return HResult::Fail;
  const std::optional<std::string> reply = Ask(kUSBFirmwareVersion);
  if (!reply) return HResult::Fail;
  version = ReadFirmwareVersion(*reply);
  return HResult::Ok;
}

HResult KVFPrinterUSB::GetSupplyLevels(std::vector<SupplyEntry>& supplies) {
  USBStatus status{};
  if (const HResult result = ReadStatus(status); !Succeeded(result)) return result;
  for (SupplyEntry& entry : SuppliesOfStatus(status, family_)) supplies.push_back(std::move(entry));
  return HResult::Ok;
}

HResult KVFPrinterUSB::CollectZOLT(ZOLTInformation& record, Codes& codes) {
  if (IsZOLTSupported() != HResult::Ok) return HResult::Fail;
  std::unique_ptr<PortContention> lock;
  if (const std::string_view code = LockPort(lock); !code.empty()) {
    codes.Add(code);
    return HResult::Fail;
  }

  if (record.Document().Text().empty()) {
    if (const std::unique_ptr<USBBulkIO> pipes = services_.openBulk(devicePath_)) {
      std::string document;
      pipes->RunBulkTransaction(document);
      record.SetDocument(std::move(document));
    } else {
      codes.Add("/open fail");  // and goes on: the empty text is no document
    }
  }
  const DeviceDocument& document = record.Document();
  if (!document.Tree()) {
    codes.Add("/xml error" + document.Text());
    return HResult::Fail;
  }

  if (const HResult result = ReadIdentity(record, codes); !Succeeded(result)) return result;
  std::string version;
  if (!Succeeded(GetFirmwareVersion(version))) {
    codes.Add("/fwv err");
    return HResult::Fail;
  }
  record.SetFirmwareVersion(version);

  const bool delivered = HasCommand(deviceID_, kUsageDocumentCommand);
  record.SetDocumentMode(delivered);
  const bool read = delivered ? record.ReadCountsAndSupplies(document, codes) : record.ReadXml(document, codes);
  return read ? HResult::Ok : HResult::Fail;
}

HResult KVFPrinterUSB::CollectPPA(PPAInformation& record, Codes& codes) {
  WriteDebug("[ZT] getPPAInformation start");
  std::unique_ptr<PortContention> lock;
  if (const std::string_view code = LockPort(lock); !code.empty()) {
    ZT_TRACE(Information, (code == kJobPending ? "[ZT] job pending" : "[ZT] locked failed"));
    codes.Add(code);
    return HResult::Fail;
  }
  std::unique_ptr<USBBulkIO> pipes = services_.openBulk(devicePath_);
  if (!pipes) {
    ZT_TRACE(Information, "[ZT] getPPAInformation usb open failed.");
    codes.Add("/open fail");
    return HResult::Fail;
  }

  std::string document;
  for (int attempt = 0; attempt < kDocumentAttempts; ++attempt) {
    if (attempt > 0) services_.pause(kDocumentPause);
    ZT_TRACE(Information, "[ZT] more try to get xml.: " << attempt << " ..");
    if (Succeeded(pipes->RunBulkTransaction(document))) {
      ZT_TRACE(Information, "[ZT] Success to get xml...");
      break;
    }
  }
  pipes.reset();
  record.SetDocument(std::move(document));
  if (!record.Document().Tree()) {
    codes.Add("/xml error");
    return HResult::Fail;
  }
  const bool read = record.ReadXml(record.Document(), codes) && record.ReadCountsAndSupplies(record.Document(), codes);
  record.DropDocumentTree();
  return read ? HResult::Ok : HResult::Fail;
}

HResult KVFPrinterUSB::GetDeviceID(std::string& deviceID) {
  if (!deviceID_.raw.empty()) {
    deviceID = deviceID_.raw;
    return HResult::Ok;
  }
  const std::unique_ptr<USBControl> control = OpenControl();
  if (!control) return HResult::Fail;
  std::array<std::uint8_t, kLongestDeviceID> reply{};
  const std::optional<std::size_t> length = control->QueryDeviceID(reply);
  if (!length || *length == 0) return HResult::Fail;
  deviceID.assign(reply.begin(), reply.begin() + static_cast<std::ptrdiff_t>(std::min(*length, reply.size())));
  return HResult::Ok;
}

HResult KVFPrinterUSB::GetPageCounters(std::uint32_t& largest, std::uint32_t& total) {
  const std::unique_ptr<USBControl> control = OpenControl();
  if (!control) return HResult::Fail;
  std::array<std::uint8_t, kLongestReply> block{};
  const std::optional<std::size_t> length = control->Request(kUSBCounters, block);
  if (!length) return HResult::NotImplemented;
  if (*length != block.size()) return HResult::Fail;
  const std::optional<USBPageCounters> counters = ReadCounterBlock(block);
  if (!counters) return HResult::Fail;
  largest = counters->largest;
  total = counters->total;
  return HResult::Ok;
}

HResult KVFPrinterUSB::GetExtendedDeviceID(std::string& extendedID) {
  std::optional<std::string> reply = Ask(kUSBExtendedDeviceID);
  if (!reply) return HResult::Fail;
  extendedID = *std::move(reply);
  return HResult::Ok;
}

HResult KVFPrinterUSB::SetProtection(bool on) {
  const std::unique_ptr<USBControl> control = OpenControl();
  if (!control) return HResult::Fail;
  std::array<std::uint8_t, 8> reply{};
  const std::optional<std::size_t> length = control->Request(on ? kUSBProtectionOn : kUSBProtectionOff, reply);
  const bool confirmed = length == reply.size() && TextOfReply(reply).starts_with(on ? "ON" : "OFF");
  return confirmed ? HResult::Ok : HResult::Fail;
}

HResult KVFPrinterUSB::ReadSerialNumber(std::string& serialNumber) {
  std::optional<std::string> reply = Ask(kUSBSerialNumber);
  if (!reply) return HResult::Fail;
  serialNumber = *std::move(reply);
  return HResult::Ok;
}

std::unique_ptr<USBControl> KVFPrinterUSB::OpenControl() const {
  std::unique_ptr<USBControl> control = services_.openControl(devicePath_);
  if (!control) WriteDebug("Can't open");
  return control;
}

std::optional<std::string> KVFPrinterUSB::Ask(USBControl& control, const USBRequest& request) {
  std::array<std::uint8_t, kLongestReply> reply{};
  const std::optional<std::size_t> length = control.Request(request, reply);
  if (!length) return std::nullopt;
  return TextOfReply(std::span(reply).first(std::min(*length, reply.size())));
}

std::optional<std::string> KVFPrinterUSB::Ask(const USBRequest& request) const {
  const std::unique_ptr<USBControl> control = OpenControl();
  if (!control) return std::nullopt;
  return Ask(*control, request);
}

HResult KVFPrinterUSB::ReadStatus(USBStatus& status) const {
  const std::unique_ptr<USBControl> control = OpenControl();
  if (!control) return HResult::Fail;
  USBStatus reply{};
  if (!control->Request(kUSBStatus, reply)) return HResult::NotImplemented;
  status = reply;
  return HResult::Ok;
}

void KVFPrinterUSB::MergeExtendedID() {
  const std::unique_ptr<USBControl> control = OpenControl();
  if (!control) {
    ZT_TRACE(Information, "can't open device path");
    return;
  }
  const std::optional<std::string> text = Ask(*control, kUSBExtendedDeviceID);
  if (!text) {
    ZT_TRACE(Information, "can't get EXT");
    return;
  }
  MergeExtendedDeviceID(*text, deviceID_);
}

void KVFPrinterUSB::WakeSequence() {
  const std::unique_ptr<USBControl> control = OpenControl();
  if (!control) return;
  for (int pass = 0; pass < kWakePasses; ++pass) {
    USBStatus status{};
    if (!control->Request(kUSBStatus, status) || !IsAsleep(status)) return;
    std::array<std::uint8_t, kLongestReply> ignored{};
    control->Request(kUSBWake, ignored);
    services_.pause(kWakePause);
  }
}

std::string_view KVFPrinterUSB::LockPort(std::unique_ptr<PortContention>& lock) const {
  std::optional<DeviceMonitor> monitor = services_.loadDeviceMonitor();
  if (!monitor) {
    const bool pending = !QueueName().empty() && services_.countJobs(QueueName()) >= 1;
    return pending ? kJobPending : std::string_view();
  }
  lock = std::make_unique<PortContention>(*std::move(monitor), services_.pause);
  return lock->Lock() ? std::string_view() : kLockFailed;
}

}  // namespace zt
