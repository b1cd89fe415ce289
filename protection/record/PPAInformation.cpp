#include "PPAInformation.h"

#include "ReportXml.h"

namespace zt {
namespace {

constexpr const char* kDeviceTexts[] = {"SystemInstalledDate", "CurrentVersion", "FormatType"};

constexpr ElementMessage kTonerTexts[] = {{"SerialNumber", "/no tlevel"},  // as in the print-volume report
                                          {"UsedDotPercent", "/no UsedDotPercent"},
                                          {"Capacity", "/no Capacity"},
                                          {"TargetDot", "/no TargetDot"}};

constexpr ElementMessage kDeviceRules[] = {{"MDL", "/error:no mdl"},
                                           {"GeneralSerialNumber", "/error:no serial number"},
                                           {"SystemInstalledDate", "/warning:no systeminstalleddate"},
                                           {"CurrentVersion", "/warning:no XMLinterfaceversion"},
                                           {"FormatType", "/warning:no XMLformattype"}};
constexpr ElementMessage kTonerRules[] = {{"UsedDotPercent", "/warning:no tonerUsedotpercent"},
                                          {"SerialNumber", "/warnig:no serial number"},  // spelled so on purpose
                                          {"Capacity", "/warning:no tonerCapacity"},
                                          {"TargetDot", "/warning:no tonerTargetdot"}};

}  // namespace

std::string PPAInformation::BuildXml() const {
  return BuildDocument("", agreed_ ? "<ZOLTAgree>1</ZOLTAgree>\n" : "<ZOLTAgree>0</ZOLTAgree>\n");
}

bool PPAInformation::ValidateXml(std::string_view document, std::string& messages) {
  return ValidateReport(document, {.device = kDeviceRules, .counts = {}, .toner = kTonerRules, .closing = {}},
                        messages);
}

bool PPAInformation::ReadXml(std::string_view document, std::string& messages) {
  return ReadReport(document, messages, [&](const tinyxml2::XMLElement* report) {
    ReadDeviceValues(report, kDeviceTexts);
    // Printers deliver this report with counters or without; one without counters and supplies has nothing to report.
    if (!FindChild(report, "Count") && !FindChild(report, "Supplies")) messages += "/no Count el";
  });
}

bool PPAInformation::ReadCountsAndSupplies(std::string_view document, std::string& messages) {
  return ReadReport(document, messages, [&](const tinyxml2::XMLElement* report) { ReadToners(report, messages); });
}

bool PPAInformation::ReadTonerXml(const tinyxml2::XMLElement& element, std::string& messages) {
  const std::size_t before = messages.size();
  const std::int32_t colour = ReadTonerColour(element, messages);
  if (colour == 0) return false;
  TonerRecord toner(colour);
  ReadTonerTexts(element, kTonerTexts, toner, messages);
  AddToner(std::move(toner));
  return messages.size() == before;
}

}  // namespace zt
