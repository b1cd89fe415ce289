#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ReportRecord.h"
#include "ReportXml.h"

namespace zt {

// PPAInformation is the product-protection report about one printer: its identity, the version and form of its
// consumable data, its toners with their dot usage, and the user's agreement.
class PPAInformation : public ReportRecord {
 public:
  void ReadTonerXml(const tinyxml2::XMLElement& element, Codes& codes) override;

  // ToText returns BuildXml.
  std::string ToText() const override { return BuildXml(); }

  // ReadXml reads the device part of the printer's document: installed date, interface version and form. A document
  // with neither `Count` nor `Supplies` carries no data and is reported.
  bool ReadXml(const DeviceDocument& document, Codes& codes) override;

  // ReadCountsAndSupplies reads the toners. This report has no counters.
  bool ReadCountsAndSupplies(const DeviceDocument& document, Codes& codes) override;

  void SetCurrentVersion(std::string_view text) { SetValue("CurrentVersion", text); }
  void SetSBX(std::string_view text) { SetValue("SBX", text); }  // the toner life
  void SetFormatType(std::string_view text) { SetValue("FormatType", text); }

  // SetAgreement stores whether the user agreed to the product protection.
  void SetAgreement(bool agreed) { agreed_ = agreed; }

  // BuildXml writes the document from the values that were set. A toner whose colour is none leaves an unclosed
  // element, which ValidateXml then rejects.
  std::string BuildXml() const;

  // ValidateXml checks a report and adds a code for what is missing or wrong; true only when it found nothing. A
  // document that does not parse replaces the codes by one.
  static bool ValidateXml(std::string_view document, Codes& codes);

  // FindGaps is ValidateXml with the places of the gaps.
  static std::vector<Gap> FindGaps(std::string_view document);

 private:
  bool agreed_ = false;
};

}  // namespace zt
