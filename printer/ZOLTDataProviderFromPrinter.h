#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "IZOLTDataProvider.h"
#include "KVFPrinter.h"
#include "QueueServices.h"

namespace zt {

// ZOLTDataProviderFromPrinter serves the runs with the data of the real printer behind a queue.
class ZOLTDataProviderFromPrinter : public IZOLTDataProvider {
 public:
  // The constructor finds the printer. Without one, what needs it fails later.
  ZOLTDataProviderFromPrinter(std::wstring queueName, QueueServices services);

  bool Initialize(bool checkSupport) override;
  bool GetSerialNumber(std::string& serialNumber) override;
  std::string GetPrinterAddress() const override { return printerAddressNarrow_; }
  bool WaitForJobs(int maximumPolls, bool& jobsPending) override;
  bool CollectZOLT(ZOLTInformation& record) override;
  bool CollectSBX(PPAInformation& record) override;
  bool CheckSBXSupport(ProtectionState* state) override;
  std::wstring GetQueueName() const override { return queueName_; }
  bool SendRawToQueue(const char* text) override;
  bool SetProtection(bool on) override;
  bool GetModelName(std::string& modelName) override;
  std::string GetSBXDocument() const override { return sbxDocument_; }
  bool GetTonerLife(std::uint32_t* tonerLife, std::uint32_t* changeCount) override;
  bool GetHostVersion(ReportRecord& record) override;
  bool GetCountryIndex(std::string& countryIndex) override;
  bool ExtendedIDContains(std::string_view text) override;

 private:
  // IsReady reports whether the printer is there and open; it traces what is missing.
  bool IsReady() const;

  // Collect makes a collection of the printer. Memory that the printer's document has used up makes it fail.
  HResult Collect(const std::function<HResult()>& collection);

  // TraceCodes traces, once, why a collection failed or what it lacked.
  void TraceCodes(HResult result);

  std::wstring queueName_;
  QueueServices services_;
  std::unique_ptr<KVFPrinter> printer_;
  std::wstring printerAddress_;
  std::string printerAddressNarrow_;
  bool initialised_ = false;
  std::string sbxDocument_;  // the document that the printer delivered for the protection record
  std::string errorText_;    // what the printer's collections gathered
};

}  // namespace zt
