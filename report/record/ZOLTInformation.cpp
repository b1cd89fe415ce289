#include "ZOLTInformation.h"

#include <vector>

#include "Codes.h"
#include "DocumentSize.h"
#include "Text.h"
#include "Trace.h"

namespace zt {
namespace {

constexpr const char* kDeviceTexts[] = {"SystemInstalledDate", "SystemFirmwareVersion", "ProductType"};

constexpr ElementCode kTonerTexts[] = {{"VendorName", "/no tvendorname"},
                                       {"SupplierID", "/no tsupplid"},
                                       {"ModelID", "/no tmodelid"},
                                       {"SerialNumber", "/no tlevel"},  // the level's code, on purpose
                                       {"InstalledDate", "/no tinstdate"}};

constexpr ElementCode kDeviceRules[] = {{"MDL", "/error:no mdl"},
                                        {"ProductType", "/error:no producttype"},
                                        {"GeneralSerialNumber", "/error:no serial number"},
                                        {"SystemFirmwareVersion", "/error:no fwver"},
                                        {"SystemInstalledDate", "/warning:no systeminstalleddate"}};
constexpr ElementCode kCountRules[] = {{"DevTotalMonoCount", "/error:no mono count"},
                                       {"DevTotalColorCount", "/warning:no color count or Mono model"}};
constexpr ElementCode kTonerRules[] = {{"Level", "/warning:no level or Not Support"},
                                       {"AverageAreaCoverage", "/warning:no averageareacoverage or Not Support"},
                                       {"VendorName", "/warning:no vendorname"},
                                       {"ModelID", "/error:no modelid"},
                                       {"SupplierID", "/warning:no supplierid"},
                                       {"SerialNumber", "/warnig:no serial number"},  // spelled so on purpose
                                       {"InstalledDate", "/warning:no install date"}};
constexpr ElementCode kClosingRules[] = {{"SourceType", "/info:is not RQD"},
                                         {"IBL", "/error:no CRUM - IBL info"},
                                         {"TTime", "/error:no CRUM - TTime info"},
                                         {"CountryIndex", "/warning:no CountryIndex"}};
constexpr ReportRules kRules = {kDeviceRules, kCountRules, kTonerRules, kClosingRules};

std::string CountText(std::int32_t pages) { return pages < 0 ? std::string() : std::to_string(pages); }

// A printer without the figure says so in words; the element then stays unset.
bool IsSupported(std::string_view text) { return text != "Not Support"; }

// Indentation makes a hundred times its size of a printer's document of many nested elements. Real ones have a few
// kilobytes; what is still longer than this would only fill memory and the line to the server.
constexpr std::size_t kLongestAmended = 4 * kLongestDocument;

// AmendingPrinter prints a document with elements of its report added or put right, and no more than kLongestAmended
// bytes. The tree stays as it is.
class AmendingPrinter : public tinyxml2::XMLPrinter {
 public:
  explicit AmendingPrinter(const tinyxml2::XMLElement& report) : report_(report) {}

  // Append adds an element at the end of the report. The texts of both operations are borrowed.
  void Append(const char* name, const char* text) { amendments_.push_back({nullptr, name, text}); }

  // Amend puts the element right: in place or, where it is missing, at the end. An empty text changes nothing.
  void Amend(const char* name, const std::string& text) {
    if (text.empty()) return;
    const tinyxml2::XMLElement* element = report_.FirstChildElement(name);
    const char* present = TextOf(element);
    if (!present || text != present) amendments_.push_back({element, name, text.c_str()});
  }

  bool IsComplete() const { return complete_; }

  using XMLPrinter::VisitEnter;
  using XMLPrinter::VisitExit;
  bool VisitEnter(const tinyxml2::XMLElement& element, const tinyxml2::XMLAttribute* attribute) override {
    XMLPrinter::VisitEnter(element, attribute);
    for (const Amendment& amendment : amendments_) {
      if (amendment.replaced != &element) continue;
      PushText(amendment.text);
      return false;  // its children are left out
    }
    return true;
  }
  bool VisitExit(const tinyxml2::XMLElement& element) override {
    if (&element == &report_) {
      for (const Amendment& amendment : amendments_) {
        if (amendment.replaced) continue;
        OpenElement(amendment.name);
        PushText(amendment.text);
        CloseElement();
      }
    }
    return XMLPrinter::VisitExit(element);
  }

 protected:
  void Write(const char* text, std::size_t size) override {
    if (Fits(size)) XMLPrinter::Write(text, size);
  }
  void Putc(char character) override {
    if (Fits(1)) XMLPrinter::Putc(character);
  }

 private:
  struct Amendment {
    const tinyxml2::XMLElement* replaced;  // null: appended
    const char* name;
    const char* text;
  };

  bool Fits(std::size_t size) {
    const auto printed = static_cast<std::size_t>(CStrSize()) - 1;  // without the NUL
    complete_ = complete_ && size <= kLongestAmended - printed;
    return complete_;
  }

  const tinyxml2::XMLElement& report_;
  std::vector<Amendment> amendments_;
  bool complete_ = true;
};

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
  const tinyxml2::XMLDocument* tree = Document().Tree();
  const tinyxml2::XMLElement* report = tree ? FindReport(*tree) : nullptr;
  if (!report) return Document().Text();
  AmendingPrinter printer(*report);
  if (fromUniversalDriver_) printer.Append("SourceType", "RQD");
  for (const char* name : {"MDL", "GeneralSerialNumber"}) {
    const auto value = DeviceValues().find(name);
    if (value != DeviceValues().end()) printer.Amend(name, value->second);
  }
  tree->Print(&printer);
  if (printer.IsComplete()) return printer.CStr();
  ZT_TRACE(Warning, "amended document longer than " << kLongestAmended << " bytes: posted as it came");
  return Document().Text();
}

bool ZOLTInformation::ValidateXml(std::string_view document, Codes& codes) {
  return ValidateReport(document, kRules, codes);
}

std::vector<Gap> ZOLTInformation::FindGaps(std::string_view document) { return zt::FindGaps(document, kRules); }

bool ZOLTInformation::ReadXml(const DeviceDocument& document, Codes& codes) {
  bool hasCounts = false;
  ReadReport(document, codes, [&](const tinyxml2::XMLElement* report) {
    ReadDeviceValues(report, kDeviceTexts);
    hasCounts = ReadCounts(report, codes);
    ReadToners(report, codes);
  });
  return hasCounts;
}

bool ZOLTInformation::ReadCountsAndSupplies(const DeviceDocument& document, Codes& codes) {
  bool hasCounts = false;
  ReadReport(document, codes, [&](const tinyxml2::XMLElement* report) {
    hasCounts = ReadCounts(report, codes);
    ReadToners(report, codes);
  });
  return hasCounts;
}

bool ZOLTInformation::ReadCounts(const tinyxml2::XMLElement* report, Codes& codes) {
  const tinyxml2::XMLElement* counts = FindChild(report, "Count");
  if (!counts) codes.Add("/no Count el");
  if (const char* mono = ChildText(counts, "DevTotalMonoCount")) SetTotalMonoCount(ReadLeadingDecimal(mono));
  if (const char* colour = ChildText(counts, "DevTotalColorCount")) SetTotalColorCount(ReadLeadingDecimal(colour));
  return counts != nullptr;
}

void ZOLTInformation::ReadTonerXml(const tinyxml2::XMLElement& element, Codes& codes) {
  const std::optional<TonerColour> colour = ReadTonerColour(element, codes);
  if (!colour) return;
  TonerRecord toner(*colour);
  const char* level = ChildText(&element, "Level");
  if (!level) {
    codes.Add("/no tlevel");
  } else if (IsSupported(level)) {
    toner.SetLevel(ReadLeadingUnsigned(level));
  }
  const char* coverage = ChildText(&element, "AverageAreaCoverage");
  if (!coverage) {
    codes.Add("/no taac");
  } else if (IsSupported(coverage)) {
    toner.SetAverageAreaCoverage(ReadLeadingUnsigned(coverage));
  }
  ReadTonerTexts(element, kTonerTexts, toner, codes);
  AddToner(std::move(toner));
}

}  // namespace zt
