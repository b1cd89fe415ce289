#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zt {

class PPAInformation;  // of protection/record: only its reference passes through here
class ReportRecord;
class ZOLTInformation;
enum class ProtectionState : std::uint32_t;

// IZOLTDataProvider is the one interface through which the runs reach the printer behind a queue. Nothing throws; the
// reasons of a failure go to the trace log. Outputs keep their content on failure unless said otherwise.
class IZOLTDataProvider {
 public:
  // Longest waits of the runs for the queue's jobs, in polls: before the printer is asked, and before it is read out.
  static constexpr int kPollsBeforeReading = 30;
  static constexpr int kPollsBeforeCollecting = 600;

  virtual ~IZOLTDataProvider() = default;

  // Initialize opens the printer; with `checkSupport` it also tells whether the printer offers print-volume reporting.
  virtual bool Initialize(bool checkSupport) = 0;

  // GetSerialNumber reads the printer's serial number. False also for the serial number "MPS-MODE".
  virtual bool GetSerialNumber(std::string& serialNumber) = 0;

  // GetPrinterAddress returns the network address or USB device path, in the ANSI code page; empty without a printer.
  virtual std::string GetPrinterAddress() const = 0;

  // WaitForJobs polls the queue once a second, at most `maximumPolls` times, until it holds no job. `jobsPending` tells
  // whether jobs were still there at the end. False when the jobs cannot be counted.
  virtual bool WaitForJobs(int maximumPolls, bool& jobsPending) = 0;

  // CollectZOLT fills the print-volume record from the printer.
  virtual bool CollectZOLT(ZOLTInformation& record) = 0;

  // CollectSBX fills the product-protection record from the printer.
  virtual bool CollectSBX(PPAInformation& record) = 0;

  // CheckSBXSupport reads the protection state. False for a null output.
  virtual bool CheckSBXSupport(ProtectionState* state) = 0;

  // GetQueueName returns the name of the queue, whether there is a printer behind it or not.
  virtual std::wstring GetQueueName() const = 0;

  // SendRawToQueue prints the text as one raw job of the queue. False for null.
  virtual bool SendRawToQueue(const char* text) = 0;

  // SetProtection switches the printer's consumable protection on or off.
  virtual bool SetProtection(bool on) = 0;

  // GetModelName returns the model as the printer's device ID words it.
  virtual bool GetModelName(std::string& modelName) = 0;

  // GetSBXDocument returns the document that CollectSBX has read and kept; empty without one. No caller in this
  // program; part of the interface.
  virtual std::string GetSBXDocument() const = 0;

  // GetTonerLife reads the toner life and the toner change count. False for a null output.
  virtual bool GetTonerLife(std::uint32_t* tonerLife, std::uint32_t* changeCount) = 0;

  // GetHostVersion stores the version of the installed driver package in the record.
  virtual bool GetHostVersion(ReportRecord& record) = 0;

  // GetCountryIndex returns the country that the printer was made for. True, the text untouched, for a printer that
  // names none.
  virtual bool GetCountryIndex(std::string& countryIndex) = 0;

  // ExtendedIDContains reports whether the printer's extended device ID holds the text. No caller in this program; part
  // of the interface.
  virtual bool ExtendedIDContains(std::string_view text) = 0;
};

}  // namespace zt
