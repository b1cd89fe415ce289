#pragma once

#include <new>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "Codes.h"
#include "KVFPrinter.h"
#include "PPAInformation.h"
#include "ZOLTInformation.h"

namespace zt {

// FakePrinter answers what its public members hold; what is absent fails.
class FakePrinter : public KVFPrinter {
 public:
  explicit FakePrinter(std::string_view deviceID) { AdoptDeviceID(deviceID); }

  bool opens = true;
  bool usb = false;
  bool memory = true;
  std::optional<std::wstring> address = L"10.0.0.7";
  std::optional<std::string> serialNumber = "SN7";
  std::optional<std::pair<std::uint32_t, std::uint32_t>> counters;
  std::string extendedID;
  HResult extendedResult = HResult::Ok;
  HResult collectResult = HResult::Ok;
  HResult protectionResult = HResult::Ok;
  HResult countryResult = HResult::Ok;
  HResult sbxResult = HResult::Ok;
  std::string codes;     // what a collection appends to the error text
  std::string document;  // what a collection of the protection record delivers
  std::vector<std::string> calls;

  HResult Open() override {
    calls.push_back("Open");
    return opens ? HResult::Ok : HResult::Fail;
  }
  HResult GetStatusBlock(StatusBlock&) override { return HResult::Fail; }
  HResult GetPortAddress(std::wstring& text) override {
    if (!address) return HResult::Fail;
    text = *address;
    return HResult::Ok;
  }
  HResult GetFirmwareVersion(std::string&) override { return HResult::Fail; }
  HResult GetSupplyLevels(std::vector<SupplyEntry>&) override { return HResult::Fail; }
  HResult CollectZOLT(ZOLTInformation& record, Codes& gathered) override {
    calls.push_back("GetZOLTInformation " + record.Document().Text());
    record.SetModelName("collected");
    gathered.Add(codes);
    return collectResult;
  }
  HResult CollectPPA(PPAInformation& record, Codes& gathered) override {
    calls.push_back("GetPPAInformation");
    if (!memory) throw std::bad_alloc();
    record.SetDocument(document);
    gathered.Add(codes);
    return collectResult;
  }
  HResult GetDeviceID(std::string&) override { return HResult::Fail; }
  HResult GetPageCounters(std::uint32_t& largest, std::uint32_t& total) override {
    if (!counters) return HResult::Fail;
    std::tie(largest, total) = *counters;
    return HResult::Ok;
  }
  HResult GetCountryIndex(std::string& text) override {
    if (countryResult != HResult::Ok) return countryResult;
    return KVFPrinter::GetCountryIndex(text);
  }
  HResult GetExtendedDeviceID(std::string& text) override {
    text = extendedID;
    return extendedResult;
  }
  HResult SetProtection(bool on) override {
    calls.push_back(on ? "SetProtection(on)" : "SetProtection(off)");
    return protectionResult;
  }
  HResult GetSBXState(ProtectionState* state) override {
    return sbxResult == HResult::Ok ? KVFPrinter::GetSBXState(state) : sbxResult;
  }
  bool IsUSB() const override { return usb; }

 private:
  HResult ReadSerialNumber(std::string& text) override {
    calls.push_back("ReadSerialNumber");
    if (!serialNumber) return HResult::Fail;
    text = *serialNumber;
    return HResult::Ok;
  }
};

}  // namespace zt
