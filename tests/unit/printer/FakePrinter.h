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

  bool usb = false;
  bool memory = true;
  HResult result = HResult::Ok;          // of opening, collecting, setting
  HResult identityResult = HResult::Ok;  // of what is read from the device ID
  std::optional<std::wstring> address = L"10.0.0.7";
  std::optional<std::string> serialNumber = "SN7";
  std::optional<std::pair<std::uint32_t, std::uint32_t>> counters;
  std::string codes;     // what a collection appends to the error text
  std::string document;  // what a collection of the protection record delivers
  std::vector<std::string> calls;

  HResult Open() override { return Called("Open"); }
  HResult GetPortAddress(std::wstring& text) override { return Give(address, text); }
  HResult CollectZOLT(ZOLTInformation& record, Codes& gathered) override {
    record.SetModelName("collected");
    gathered.Add(codes);
    return Called("GetZOLTInformation " + record.Document().Text());
  }
  HResult CollectPPA(PPAInformation& record, Codes& gathered) override {
    if (!memory) throw std::bad_alloc();
    record.SetDocument(document);
    gathered.Add(codes);
    return Called("GetPPAInformation");
  }
  HResult GetPageCounters(std::uint32_t& largest, std::uint32_t& total) override {
    std::pair<std::uint32_t, std::uint32_t> both{largest, total};
    const HResult given = Give(counters, both);
    std::tie(largest, total) = both;
    return given;
  }
  HResult GetCountryIndex(std::string& text) override {
    return identityResult == HResult::Ok ? KVFPrinter::GetCountryIndex(text) : identityResult;
  }
  HResult GetExtendedDeviceID(std::string& text) override {
    text = "CMD:A,B;";
    return identityResult;
  }
  HResult SetProtection(bool on) override { return Called(on ? "SetProtection(on)" : "SetProtection(off)"); }
  HResult GetSBXState(ProtectionState* state) override {
    return identityResult == HResult::Ok ? KVFPrinter::GetSBXState(state) : identityResult;
  }
  bool IsUSB() const override { return usb; }

  // The provider asks for none of these.
  HResult GetStatusBlock(StatusBlock&) override { return HResult::Fail; }
  HResult GetFirmwareVersion(std::string&) override { return HResult::Fail; }
  HResult GetSupplyLevels(std::vector<SupplyEntry>&) override { return HResult::Fail; }
  HResult GetDeviceID(std::string&) override { return HResult::Fail; }

 private:
  HResult ReadSerialNumber(std::string& text) override {
    calls.push_back("ReadSerialNumber");
    return Give(serialNumber, text);
  }
  HResult Called(std::string call) {
    calls.push_back(std::move(call));
    return result;
  }
  template <class Value>
  static HResult Give(const std::optional<Value>& given, Value& out) {
    if (given) out = *given;
    return given ? HResult::Ok : HResult::Fail;
  }
};

}  // namespace zt
