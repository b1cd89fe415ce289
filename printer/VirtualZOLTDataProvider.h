#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "IZOLTDataProvider.h"

namespace zt {

// VirtualZOLTDataProvider serves the runs with the data of a made-up colour printer, so that an administrator can try
// the whole road of both runs, history, server and agreement included, without a printer. It touches neither a printer
// nor the queue, and none of its operations fails but for a null output.
class VirtualZOLTDataProvider : public IZOLTDataProvider {
 public:
  explicit VirtualZOLTDataProvider(std::wstring queueName) : queueName_(std::move(queueName)) {}

  bool Initialize(bool checkSupport) override;
  bool GetSerialNumber(std::string& serialNumber) override;
  std::string GetPrinterAddress() const override;
  bool WaitForJobs(int maximumPolls, bool& jobsPending) override;
  bool CollectZOLT(ZOLTInformation& record) override;
  bool CollectSBX(PPAInformation& record) override;
  bool CheckSBXSupport(ProtectionState* state) override;
  std::wstring GetQueueName() const override { return queueName_; }
  bool SendRawToQueue(const char* text) override;
  bool SetProtection(bool on) override;
  bool GetModelName(std::string& modelName) override;
  std::string GetSBXDocument() const override { return {}; }
  bool GetTonerLife(std::uint32_t* tonerLife, std::uint32_t* changeCount) override;
  bool GetHostVersion(ReportRecord& record) override;
  bool GetCountryIndex(std::string& countryIndex) override;
  bool ExtendedIDContains(std::string_view text) override;

 private:
  std::wstring queueName_;
};

}  // namespace zt
