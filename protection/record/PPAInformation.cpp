#include "PPAInformation.h"

#include "Codes.h"

namespace zt {
namespace {

constexpr const char* kDeviceTexts[] = {"SystemInstalledDate", "CurrentVersion", "FormatType"};

constexpr ElementCode kTonerTexts[] = {{"SerialNumber", "/no tlevel"},  // as in the print-volume report
                                       {"UsedDotPercent", "/no UsedDotPercent"},
                                       {"Capacity", "/no Capacity"},
                                       {"TargetDot", "/no TargetDot"}};

constexpr ElementCode kDeviceRules[] = {{"MDL", "/error:no mdl"},
                                        {"GeneralSerialNumber", "/error:no serial number"},
                                        {"SystemInstalledDate", "/warning:no systeminstalleddate"},
                                        {"CurrentVersion", "/warning:no XMLinterfaceversion"},
                                        {"FormatType", "/warning:no XMLformattype"}};
constexpr ElementCode kTonerRules[] = {{"UsedDotPercent", "/warning:no tonerUsedotpercent"},
                                       {"SerialNumber", "/warnig:no serial number"},  // spelled so on purpose
                                       {"Capacity", "/warning:no tonerCapacity"},
                                       {"TargetDot", "/warning:no tonerTargetdot"}};
constexpr ReportRules kRules = {.device = kDeviceRules, .counts = {}, .toner = kTonerRules, .closing = {}};

}  // namespace

std::string PPAInformation::BuildXml() const {
  return BuildDocument("", agreed_ ? "<ZOLTAgree>1</ZOLTAgree>\n" : "<ZOLTAgree>0</ZOLTAgree>\n");
}

bool PPAInformation::ValidateXml(std::string_view document, Codes& codes) {
  return ValidateReport(document, kRules, codes);
}

std::vector<Gap> PPAInformation::FindGaps(std::string_view document) { return zt::FindGaps(document, kRules); }

bool PPAInformation::ReadXml(const DeviceDocument& document, Codes& codes) {
  return ReadReport(document, codes, [&](const tinyxml2::XMLElement* report) {
    ReadDeviceValues(report, kDeviceTexts);
    // Printers deliver this report with counters or without; one without counters and supplies has nothing to report.
    if (!FindChild(report, "Count") && !FindChild(report, "Supplies")) codes.Add("/no Count el");
  });
}

bool PPAInformation::ReadCountsAndSupplies(const DeviceDocument& document, Codes& codes) {
  return ReadReport(document, codes, [&](const tinyxml2::XMLElement* report) { ReadToners(report, codes); });
}

void PPAInformation::ReadTonerXml(const tinyxml2::XMLElement& element, Codes& codes) {
  const std::optional<TonerColour> colour = ReadTonerColour(element, codes);
  if (!colour) return;
  TonerRecord toner(*colour);
  ReadTonerTexts(element, kTonerTexts, toner, codes);
  AddToner(std::move(toner));
}

}  // namespace zt
