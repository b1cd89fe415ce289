#include "ReportXml.h"

#include "TonerRecord.h"

namespace zt {
namespace {

void CheckElements(const tinyxml2::XMLElement* parent, std::span<const ElementCode> rules, Codes& codes) {
  for (const ElementCode& rule : rules) {
    if (!ChildText(parent, rule.element)) codes.Add(rule.code);
  }
}

void CheckToner(const tinyxml2::XMLElement& toner, std::span<const ElementCode> rules, Codes& codes) {
  const char* colour = ChildText(&toner, "Color");
  if (!colour) {
    codes.Add("/error:no color info");
  } else if (!ColourOfLetter(colour)) {
    codes.Add("/error:invalid color");
  }
  CheckElements(&toner, rules, codes);
}

}  // namespace

const tinyxml2::XMLElement* FindReport(const tinyxml2::XMLDocument& document) {
  return FindChild(FindChild(&document, "root"), "ZOLT");
}

bool ValidateReport(std::string_view document, const ReportRules& rules, Codes& codes) {
  tinyxml2::XMLDocument xml;
  if (!ParseXml(document, xml)) {
    codes.Replace("error:invalid xml data");
    return false;
  }
  const std::size_t before = codes.Count();
  const tinyxml2::XMLElement* report = FindReport(xml);
  CheckElements(report, rules.device, codes);
  CheckElements(FindChild(report, "Count"), rules.counts, codes);
  const tinyxml2::XMLElement* supplies = FindChild(report, "Supplies");
  if (!supplies) {
    codes.Add("/error:no supplies");
    return false;
  }
  const tinyxml2::XMLElement* toner = FindChild(supplies, "Toner");
  if (!toner) codes.Add("/error:no toner");
  for (; toner; toner = toner->NextSiblingElement("Toner")) CheckToner(*toner, rules.toner, codes);
  CheckElements(report, rules.closing, codes);
  return codes.Count() == before;
}

std::string_view BeginningOf(const Codes& codes) {
  constexpr std::size_t kLongest = 2000;  // Four toners that lack everything stay below.
  return std::string_view(codes.Text()).substr(0, kLongest);
}

}  // namespace zt
