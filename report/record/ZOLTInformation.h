#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ReportRecord.h"
#include "ReportXml.h"

namespace zt {

// ZOLTInformation is the print-volume report about one printer: its identity, its page counters and its toners. The
// data provider fills it; the print-volume run posts its text.
class ZOLTInformation : public ReportRecord {
 public:
  void ReadTonerXml(const tinyxml2::XMLElement& element, Codes& codes) override;

  // ToText returns BuildXml, or AmendDeviceXml in document mode.
  std::string ToText() const override;

  // ReadXml reads the installed date, the firmware version and the product type, then what ReadCountsAndSupplies reads.
  // Both return true when the document is a report that holds counters: gaps in its toners are worth a code only.
  bool ReadXml(const DeviceDocument& document, Codes& codes) override;

  // ReadCountsAndSupplies reads the counters and the toners only: a printer that delivers the report itself keeps its
  // identity in its own document.
  bool ReadCountsAndSupplies(const DeviceDocument& document, Codes& codes) override;

  void SetProductType(std::string_view text) { SetValue("ProductType", text); }
  void SetFirmwareVersion(std::string_view text) { SetValue("SystemFirmwareVersion", text); }
  void SetIBL(std::string_view text) { SetValue("IBL", text); }
  void SetTTime(std::string_view text) { SetValue("TTime", text); }
  void SetTotalMonoCount(std::int32_t pages);   // a negative number is stored as empty text
  void SetTotalColorCount(std::int32_t pages);  // a negative number is stored as empty text
  const ElementValues& CounterValues() const { return counterValues_; }

  // SetDocumentMode makes the device document, amended, the report.
  void SetDocumentMode(bool on) { documentMode_ = on; }
  bool IsDocumentMode() const { return documentMode_; }

  // SetFromUniversalDriver makes the report carry the source type "RQD".
  void SetFromUniversalDriver(bool on) { fromUniversalDriver_ = on; }

  // BuildXml writes the document from the values that were set. A toner whose colour is none leaves an unclosed
  // element, which ValidateXml then rejects.
  std::string BuildXml() const;

  // AmendDeviceXml returns the device document with the source type, the model and the serial number of this record
  // added or put right. Empty without a device document; one that is no report, or would be longer than 4 MiB then, is
  // returned unchanged.
  std::string AmendDeviceXml() const;

  // ValidateXml checks a report and adds a code for what is missing or wrong; true only when it found nothing,
  // informational findings included. A document that does not parse replaces the codes by one.
  static bool ValidateXml(std::string_view document, Codes& codes);

  // FindGaps is ValidateXml with the places of the gaps.
  static std::vector<Gap> FindGaps(std::string_view document);

 private:
  bool ReadCounts(const tinyxml2::XMLElement* report, Codes& codes);

  bool documentMode_ = false;
  bool fromUniversalDriver_ = false;
  ElementValues counterValues_;
};

}  // namespace zt
