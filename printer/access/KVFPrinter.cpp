#include "KVFPrinter.h"

#include "Codes.h"
#include "Text.h"
#include "ZOLTInformation.h"

namespace zt {

HResult KVFPrinter::Unused() { return HResult::NotImplemented; }

HResult KVFPrinter::GetSupplyUnitInfo(std::vector<SupplyEntry>& /*supplies*/) { return HResult::NotImplemented; }

HResult KVFPrinter::GetZOLTInformation(ZOLTInformation& record, std::string& errorText) {
  Codes codes;
  const HResult result = CollectZOLT(record, codes);
  errorText += codes.Text();
  return result;
}

HResult KVFPrinter::GetPPAInformation(PPAInformation& record, std::string& errorText) {
  Codes codes;
  const HResult result = CollectPPA(record, codes);
  errorText += codes.Text();
  return result;
}

HResult KVFPrinter::GetSerialNumber(std::string& serialNumber) {
  if (!serialNumber_) {
    std::string received;
    const HResult result = ReadSerialNumber(received);
    if (!Succeeded(result)) return result;
    serialNumber_ = Trim(received);
  }
  serialNumber = *serialNumber_;
  return HResult::Ok;
}

HResult KVFPrinter::GetCountryIndex(std::string& countryIndex) {
  std::optional<std::string> found = FindCountryIndex(deviceID_);
  if (!found) return HResult::Fail;
  countryIndex = *std::move(found);
  return HResult::Ok;
}

HResult KVFPrinter::SetProtection(bool /*on*/) { return HResult::NotImplemented; }

HResult KVFPrinter::GetModelFamilyName(std::string& name) {
  const std::string_view familyName = ModelFamilyName(family_);
  if (familyName.empty()) return HResult::Fail;
  name = familyName;
  return HResult::Ok;
}

HResult KVFPrinter::GetModelName(std::string& model) {
  if (deviceID_.model.empty()) return HResult::Fail;
  model = deviceID_.model;
  return HResult::Ok;
}

HResult KVFPrinter::IsZOLTSupported() { return HasCommand(deviceID_, kZOLTCommand) ? HResult::Ok : HResult::False; }

HResult KVFPrinter::GetSBXState(ProtectionState* state) {
  if (!state) return HResult::Fail;
  *state = SBXStateOf(deviceID_);
  return HResult::Ok;
}

HResult KVFPrinter::GetInstalledDate(std::string& /*date*/) { return HResult::NotImplemented; }

void KVFPrinter::AdoptDeviceID(std::string_view text) {
  ParseDeviceID(text, deviceID_);
  family_ = ClassifyModelFamily(deviceID_.model);
}

HResult KVFPrinter::ReadIdentity(ZOLTInformation& record, Codes& codes) {
  std::string text;
  if (!Succeeded(GetModelName(text))) {
    codes.Add("/modelname err");
    return HResult::Fail;
  }
  record.SetModelName(text);
  if (Succeeded(GetModelFamilyName(text))) record.SetProductType(text);
  if (Succeeded(GetCountryIndex(text))) record.SetCountryIndex(text);
  if (!Succeeded(GetSerialNumber(text))) {
    codes.Add("/serialno err");
    return HResult::Fail;
  }
  record.SetSerialNumber(text);
  return HResult::Ok;
}

}  // namespace zt
