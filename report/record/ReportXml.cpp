#include "ReportXml.h"

#include <functional>
#include <map>

#include "TonerRecord.h"

namespace zt {
namespace {

constexpr std::string_view kInvalidXml = "error:invalid xml data";

// Found hears of each gap of a document that is parsed. The element is null where that is what is missing. Gaps are not
// gathered on the way: a document may have a hundred thousand.
using Found = std::function<void(std::string_view code, const tinyxml2::XMLElement* element)>;

void CheckElements(const tinyxml2::XMLElement* parent, std::span<const ElementCode> rules, const Found& found) {
  for (const ElementCode& rule : rules) {
    if (!ChildText(parent, rule.element)) found(rule.code, parent);
  }
}

void CheckToner(const tinyxml2::XMLElement& toner, std::span<const ElementCode> rules, const Found& found) {
  const char* colour = ChildText(&toner, "Color");
  if (!colour) {
    found("/error:no color info", &toner);
  } else if (!ColourOfLetter(colour)) {
    found("/error:invalid color", &toner);
  }
  CheckElements(&toner, rules, found);
}

void Check(const tinyxml2::XMLDocument& document, const ReportRules& rules, const Found& found) {
  const tinyxml2::XMLElement* report = FindReport(document);
  CheckElements(report, rules.device, found);
  CheckElements(FindChild(report, "Count"), rules.counts, found);
  const tinyxml2::XMLElement* supplies = FindChild(report, "Supplies");
  if (!supplies) {
    found("/error:no supplies", report);
    return;
  }
  const tinyxml2::XMLElement* toner = FindChild(supplies, "Toner");
  if (!toner) found("/error:no toner", supplies);
  for (; toner; toner = toner->NextSiblingElement("Toner")) CheckToner(*toner, rules.toner, found);
  CheckElements(report, rules.closing, found);
}

// Numbers gives the elements of a document their numbers, in the order of the start tags.
class Numbers : public tinyxml2::XMLVisitor {
 public:
  explicit Numbers(const tinyxml2::XMLDocument& document) { document.Accept(this); }

  bool VisitEnter(const tinyxml2::XMLElement& element, const tinyxml2::XMLAttribute* /*first*/) override {
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
  Check(xml, rules, [&](std::string_view code, const tinyxml2::XMLElement* element) {
    gaps.push_back({code, numbers.Of(element)});
  });
  return gaps;
}

bool ValidateReport(std::string_view document, const ReportRules& rules, Codes& codes) {
  tinyxml2::XMLDocument xml;
  if (!ParseXml(document, xml)) {
    codes.Replace(kInvalidXml);
    return false;
  }
  const std::size_t before = codes.Count();
  Check(xml, rules, [&codes](std::string_view code, const tinyxml2::XMLElement*) { codes.Add(code); });
  return codes.Count() == before;
}

std::string_view BeginningOf(const Codes& codes) {
  constexpr std::size_t kLongest = 2000;  // Four toners that lack everything stay below.
  return std::string_view(codes.Text()).substr(0, kLongest);
}

}  // namespace zt
