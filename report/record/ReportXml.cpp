#include "ReportXml.h"

#include <map>

#include "TonerRecord.h"

namespace zt {
namespace {

constexpr std::string_view kInvalidXml = "error:invalid xml data";

// Lack is a gap of a document that is parsed. The element is null where that is what is missing.
struct Lack {
  std::string_view code;
  const tinyxml2::XMLElement* element;
};

void CheckElements(const tinyxml2::XMLElement* parent, std::span<const ElementCode> rules, std::vector<Lack>& lacks) {
  for (const ElementCode& rule : rules) {
    if (!ChildText(parent, rule.element)) lacks.push_back({rule.code, parent});
  }
}

void CheckToner(const tinyxml2::XMLElement& toner, std::span<const ElementCode> rules, std::vector<Lack>& lacks) {
  const char* colour = ChildText(&toner, "Color");
  if (!colour) {
    lacks.push_back({"/error:no color info", &toner});
  } else if (!ColourOfLetter(colour)) {
    lacks.push_back({"/error:invalid color", &toner});
  }
  CheckElements(&toner, rules, lacks);
}

std::vector<Lack> Check(const tinyxml2::XMLDocument& document, const ReportRules& rules) {
  std::vector<Lack> lacks;
  const tinyxml2::XMLElement* report = FindReport(document);
  CheckElements(report, rules.device, lacks);
  const tinyxml2::XMLElement* counts = FindChild(report, "Count");
  CheckElements(counts, rules.counts, lacks);
  const tinyxml2::XMLElement* supplies = FindChild(report, "Supplies");
  if (!supplies) {
    lacks.push_back({"/error:no supplies", report});
    return lacks;
  }
  const tinyxml2::XMLElement* toner = FindChild(supplies, "Toner");
  if (!toner) lacks.push_back({"/error:no toner", supplies});
  for (; toner; toner = toner->NextSiblingElement("Toner")) CheckToner(*toner, rules.toner, lacks);
  CheckElements(report, rules.closing, lacks);
  return lacks;
}

// Numbers gives the elements of a document their numbers, in the order of the start tags.
class Numbers : public tinyxml2::XMLVisitor {
 public:
  explicit Numbers(const tinyxml2::XMLDocument& document) { document.Accept(this); }

  bool VisitEnter(const tinyxml2::XMLElement& element, const tinyxml2::XMLAttribute*) override {
    numbers_.emplace(&element, numbers_.size());
    return true;
  }

  std::size_t Of(const tinyxml2::XMLElement* element) const {
    const auto found = numbers_.find(element);
    return found == numbers_.end() ? 0 : found->second;
  }

 private:
  std::map<const tinyxml2::XMLElement*, std::size_t> numbers_;
};

}  // namespace

const tinyxml2::XMLElement* FindReport(const tinyxml2::XMLDocument& document) {
  return FindChild(FindChild(&document, "root"), "ZOLT");
}

std::vector<Gap> FindGaps(std::string_view document, const ReportRules& rules) {
  tinyxml2::XMLDocument xml;
  if (!ParseXml(document, xml)) return {{kInvalidXml, 0}};
  const Numbers numbers(xml);
  std::vector<Gap> gaps;
  for (const Lack& lack : Check(xml, rules)) gaps.push_back({lack.code, numbers.Of(lack.element)});
  return gaps;
}

bool ValidateReport(std::string_view document, const ReportRules& rules, Codes& codes) {
  tinyxml2::XMLDocument xml;
  if (!ParseXml(document, xml)) {
    codes.Replace(kInvalidXml);
    return false;
  }
  const std::vector<Lack> lacks = Check(xml, rules);
  for (const Lack& lack : lacks) codes.Add(lack.code);
  return lacks.empty();
}

std::string_view BeginningOf(const Codes& codes) {
  constexpr std::size_t kLongest = 2000;  // Four toners that lack everything stay below.
  return std::string_view(codes.Text()).substr(0, kLongest);
}

}  // namespace zt
