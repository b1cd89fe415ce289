#include "VirtualZOLTDataProvider.h"

#include "PPAInformation.h"
#include "ProtectionState.h"
#include "Trace.h"
#include "ZOLTInformation.h"

namespace zt {
namespace {

// 192.0.2.0/24 is set aside for documentation (RFC 5737): no real printer has such an address.
constexpr const char* kAddress = "192.0.2.10";
constexpr const char* kModel = "Velnora RV-2160 Virtual";
constexpr const char* kSerialNumber = "VIRTUAL0001";
constexpr const char* kInstalledDate = "2024-03-18";
constexpr const char* kHostVersion = "1.0.0.0";
constexpr const char* kCountryIndex = "12";
constexpr std::string_view kExtendedID = "CMD:ZOLT,SBXON,CI_12;";
constexpr std::uint32_t kTonerLife = 160;  // past the limit that holds until a server tells another
constexpr std::uint32_t kTonerChanges = 3;

struct Toner {
  TonerColour colour;
  std::uint32_t level;
  std::uint32_t coverage;
  const char* modelID;
  const char* serialNumber;
  const char* usedDots;
};

constexpr Toner kToners[] = {
    {TonerColour::Cyan, 71, 4, "RV-T21C", "VC000101", "29"},
    {TonerColour::Magenta, 64, 5, "RV-T21M", "VM000102", "36"},
    {TonerColour::Yellow, 80, 3, "RV-T21Y", "VY000103", "20"},
    {TonerColour::Black, 38, 6, "RV-T21K", "VK000104", "62"},
};

}  // namespace

bool VirtualZOLTDataProvider::Initialize(bool /*checkSupport*/) {
  ZT_TRACE(Information, "virtual printer in place of " << queueName_);
  return true;
}

bool VirtualZOLTDataProvider::GetSerialNumber(std::string& serialNumber) {
  serialNumber = kSerialNumber;
  return true;
}

std::string VirtualZOLTDataProvider::GetPrinterAddress() const { return kAddress; }

bool VirtualZOLTDataProvider::WaitForJobs(int /*maximumPolls*/, bool& jobsPending) {
  jobsPending = false;
  return true;
}

bool VirtualZOLTDataProvider::CollectZOLT(ZOLTInformation& record) {
  record.SetModelName(kModel);
  record.SetProductType("RV");
  record.SetSerialNumber(kSerialNumber);
  record.SetFirmwareVersion("V1.00.06");
  record.SetInstalledDate(kInstalledDate);
  record.SetIBL("1");
  record.SetTTime("18250");
  record.SetCountryIndex(kCountryIndex);
  record.SetTotalMonoCount(15230);
  record.SetTotalColorCount(4870);
  for (const Toner& canned : kToners) {
    TonerRecord toner(canned.colour);
    toner.SetLevel(canned.level);
    toner.SetAverageAreaCoverage(canned.coverage);
    toner.SetVendorName("Velnora");
    toner.SetModelID(canned.modelID);
    toner.SetSupplierID("VLN");
    toner.SetSerialNumber(canned.serialNumber);
    toner.SetInstalledDate(kInstalledDate);
    record.AddToner(std::move(toner));
  }
  return GetHostVersion(record);
}

bool VirtualZOLTDataProvider::CollectSBX(PPAInformation& record) {
  record.SetModelName(kModel);
  record.SetSerialNumber(kSerialNumber);
  record.SetInstalledDate(kInstalledDate);
  record.SetCurrentVersion("1.0");
  record.SetFormatType("1");
  record.SetCountryIndex(kCountryIndex);
  for (const Toner& canned : kToners) {
    TonerRecord toner(canned.colour);
    toner.SetSerialNumber(canned.serialNumber);
    toner.SetUsedDotPercent(canned.usedDots);
    toner.SetCapacity("6000");
    toner.SetTargetDot("100");
    record.AddToner(std::move(toner));
  }
  return true;
}

bool VirtualZOLTDataProvider::CheckSBXSupport(ProtectionState* state) {
  if (!state) return false;
  *state = ProtectionState::On;
  return true;
}

bool VirtualZOLTDataProvider::SendRawToQueue(const char* text) { return text != nullptr; }

bool VirtualZOLTDataProvider::SetProtection(bool /*on*/) { return true; }

bool VirtualZOLTDataProvider::GetModelName(std::string& modelName) {
  modelName = kModel;
  return true;
}

bool VirtualZOLTDataProvider::GetTonerLife(std::uint32_t* tonerLife, std::uint32_t* changeCount) {
  if (!tonerLife || !changeCount) return false;
  *tonerLife = kTonerLife;
  *changeCount = kTonerChanges;
  return true;
}

bool VirtualZOLTDataProvider::GetHostVersion(ReportRecord& record) {
  record.SetHostVersion(kHostVersion);
  return true;
}

bool VirtualZOLTDataProvider::GetCountryIndex(std::string& countryIndex) {
  countryIndex = kCountryIndex;
  return true;
}

bool VirtualZOLTDataProvider::ExtendedIDContains(std::string_view text) {
  return kExtendedID.find(text) != std::string_view::npos;
}

}  // namespace zt
