#include "ZOLTInformation.h"

#include "DocumentSize.h"
#include "ReportXml.h"
#include "Text.h"
#include "Trace.h"

namespace zt {
namespace {

constexpr const char* kDeviceTexts[] = {"SystemInstalledDate", "SystemFirmwareVersion", "ProductType"};

constexpr ElementMessage kTonerTexts[] = {{"VendorName", "/no tvendorname"},
                                          {"SupplierID", "/no tsupplid"},
                                          {"ModelID", "/no tmodelid"},
                                          {"SerialNumber", "/no tlevel"},  // the level's code, on purpose
                                          {"InstalledDate", "/no tinstdate"}};

constexpr ElementMessage kDeviceRules[] = {{"MDL", "/error:no mdl"},
                                           {"ProductType", "/error:no producttype"},
                                           {"GeneralSerialNumber", "/error:no serial number"},
                                           {"SystemFirmwareVersion", "/error:no fwver"},
                                           {"SystemInstalledDate", "/warning:no systeminstalleddate"}};
constexpr ElementMessage kCountRules[] = {{"DevTotalMonoCount", "/error:no mono count"},
                                          {"DevTotalColorCount", "/warning:no color count or Mono model"}};
constexpr ElementMessage kTonerRules[] = {{"Level", "/warning:no level or Not Support"},
                                          {"AverageAreaCoverage", "/warning:no averageareacoverage or Not Support"},
                                          {"VendorName", "/warning:no vendorname"},
                                          {"ModelID", "/error:no modelid"},
                                          {"SupplierID", "/warning:no supplierid"},
                                          {"SerialNumber", "/warnig:no serial number"},  // spelled so on purpose
                                          {"InstalledDate", "/warning:no install date"}};
constexpr ElementMessage kClosingRules[] = {{"SourceType", "/info:is not RQD"},
                                            {"IBL", "/error:no CRUM - IBL info"},
                                            {"TTime", "/error:no CRUM - TTime info"},
                                            {"CountryIndex", "/warning:no CountryIndex"}};

std::string CountText(std::int32_t pages) { return pages < 0 ? std::string() : std::to_string(pages); }

// A printer without the figure says so in words; the element then stays unset.
bool IsSupported(std::string_view text) { return text != "Not Support"; }

// Indentation makes a hundred times its size of a printer's document of many nested elements. Real ones have a few
// kilobytes; what is still longer than this would only fill memory and the line to the server.
constexpr std::size_t kLongestAmended = 4 * kLongestDocument;

// BoundedPrinter prints no more than kLongestAmended bytes.
class BoundedPrinter : public tinyxml2::XMLPrinter {
 public:
  bool IsComplete() const { return complete_; }

 protected:
  void Write(const char* text, std::size_t size) override {
    if (Fits(size)) XMLPrinter::Write(text, size);
  }
  void Putc(char character) override {
    if (Fits(1)) XMLPrinter::Putc(character);
  }

 private:
  bool Fits(std::size_t size) {
    const auto printed = static_cast<std::size_t>(CStrSize()) - 1;  // without the NUL
    complete_ = complete_ && size <= kLongestAmended - printed;
    return complete_;
  }

  bool complete_ = true;
};

// Puts the element right at the end of the report, where it is missing, or in place. An empty text changes nothing.
void AmendElement(tinyxml2::XMLElement& report, const char* name, const std::string& text) {
  if (text.empty()) return;
  tinyxml2::XMLElement* element = report.FirstChildElement(name);
  if (!element) element = report.InsertNewChildElement(name);
  const char* present = TextOf(element);
  if (present && text == present) return;
  element->DeleteChildren();
  element->SetText(text.c_str());
}

}  // namespace

void ZOLTInformation::SetTotalMonoCount(std::int32_t pages) { counterValues_["DevTotalMonoCount"] = CountText(pages); }

void ZOLTInformation::SetTotalColorCount(std::int32_t pages) {
  counterValues_["DevTotalColorCount"] = CountText(pages);
}

std::string ZOLTInformation::ToText() const { return documentMode_ ? AmendDeviceXml() : BuildXml(); }

std::string ZOLTInformation::BuildXml() const {
  std::string own;
  if (fromUniversalDriver_) own += "<SourceType>RQD</SourceType>\n";
  own += "<Count>\n" + ElementLines(counterValues_) + "</Count>\n";
  return BuildDocument(own, "");
}

std::string ZOLTInformation::AmendDeviceXml() const {
  const std::string& document = DeviceDocument();
  tinyxml2::XMLDocument xml;
  if (document.empty() || !ParseXml(document, xml)) return document;
  tinyxml2::XMLElement* root = xml.FirstChildElement("root");
  tinyxml2::XMLElement* report = root ? root->FirstChildElement("ZOLT") : nullptr;
  if (!report) return document;
  if (fromUniversalDriver_) report->InsertNewChildElement("SourceType")->SetText("RQD");
  for (const char* name : {"MDL", "GeneralSerialNumber"}) {
    const auto value = DeviceValues().find(name);
    if (value != DeviceValues().end()) AmendElement(*report, name, value->second);
  }
  BoundedPrinter printer;
  xml.Print(&printer);
  if (printer.IsComplete()) return printer.CStr();
  ZT_TRACE(Warning, "amended document longer than " << kLongestAmended << " bytes: posted as it came");
  return document;
}

bool ZOLTInformation::ValidateXml(std::string_view document, std::string& messages) {
  return ValidateReport(document, {kDeviceRules, kCountRules, kTonerRules, kClosingRules}, messages);
}

bool ZOLTInformation::ReadXml(std::string_view document, std::string& messages) {
  bool hasCounts = false;
  ReadReport(document, messages, [&](const tinyxml2::XMLElement* report) {
    ReadDeviceValues(report, kDeviceTexts);
    hasCounts = ReadCounts(report, messages);
    ReadToners(report, messages);
  });
  return hasCounts;
}

bool ZOLTInformation::ReadCountsAndSupplies(std::string_view document, std::string& messages) {
  bool hasCounts = false;
  ReadReport(document, messages, [&](const tinyxml2::XMLElement* report) {
    hasCounts = ReadCounts(report, messages);
    ReadToners(report, messages);
  });
  return hasCounts;
}

bool ZOLTInformation::ReadCounts(const tinyxml2::XMLElement* report, std::string& messages) {
  const tinyxml2::XMLElement* counts = FindChild(report, "Count");
  if (!counts) messages += "/no Count el";
  if (const char* mono = ChildText(counts, "DevTotalMonoCount")) SetTotalMonoCount(ReadLeadingDecimal(mono));
  if (const char* colour = ChildText(counts, "DevTotalColorCount")) SetTotalColorCount(ReadLeadingDecimal(colour));
  return counts != nullptr;
}

bool ZOLTInformation::ReadTonerXml(const tinyxml2::XMLElement& element, std::string& messages) {
  const std::size_t before = messages.size();
  const std::int32_t colour = ReadTonerColour(element, messages);
  if (colour == 0) return false;
  TonerRecord toner(colour);
  const char* level = ChildText(&element, "Level");
  if (!level) {
    messages += "/no tlevel";
  } else if (IsSupported(level)) {
    toner.SetLevel(ReadLeadingUnsigned(level));
  }
  const char* coverage = ChildText(&element, "AverageAreaCoverage");
  if (!coverage) {
    messages += "/no taac";
  } else if (IsSupported(coverage)) {
    toner.SetAverageAreaCoverage(ReadLeadingUnsigned(coverage));
  }
  ReadTonerTexts(element, kTonerTexts, toner, messages);
  AddToner(std::move(toner));
  return messages.size() == before;
}

}  // namespace zt
