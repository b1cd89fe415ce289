#include "ReportXml.h"

#include "TonerRecord.h"

namespace zt {
namespace {

void CheckElements(const tinyxml2::XMLElement* parent, std::span<const ElementMessage> rules, std::string& messages) {
  for (const ElementMessage& rule : rules) {
    if (!ChildText(parent, rule.element)) messages += rule.message;
  }
}

void CheckToner(const tinyxml2::XMLElement& toner, std::span<const ElementMessage> rules, std::string& messages) {
  const char* colour = ChildText(&toner, "Color");
  if (!colour) {
    messages += "/error:no color info";
  } else if (ColourOfLetter(colour) == 0) {
    messages += "/error:invalid color";
  }
  CheckElements(&toner, rules, messages);
}

}  // namespace

const tinyxml2::XMLElement* FindReport(const tinyxml2::XMLDocument& document) {
  return FindChild(FindChild(&document, "root"), "ZOLT");
}

bool ValidateReport(std::string_view document, const ReportRules& rules, std::string& messages) {
  tinyxml2::XMLDocument xml;
  if (!ParseXml(document, xml)) {
    messages = "error:invalid xml data";
    return false;
  }
  const std::size_t before = messages.size();
  const tinyxml2::XMLElement* report = FindReport(xml);
  CheckElements(report, rules.device, messages);
  CheckElements(FindChild(report, "Count"), rules.counts, messages);
  const tinyxml2::XMLElement* supplies = FindChild(report, "Supplies");
  if (!supplies) {
    messages += "/error:no supplies";
    return false;
  }
  const tinyxml2::XMLElement* toner = FindChild(supplies, "Toner");
  if (!toner) messages += "/error:no toner";
  for (; toner; toner = toner->NextSiblingElement("Toner")) CheckToner(*toner, rules.toner, messages);
  CheckElements(report, rules.closing, messages);
  return messages.size() == before;
}

std::string_view BeginningOfFindings(std::string_view findings) {
  constexpr std::size_t kLongest = 2000;  // Four toners that lack everything stay below.
  return findings.substr(0, kLongest);
}

}  // namespace zt
