#include "ReportRecord.h"

#include "Codes.h"
#include "ReportXml.h"
#include "TimeText.h"

namespace zt {
namespace {

std::string ElementLine(std::string_view name, std::string_view text) {
  std::string line;
  line.append("<").append(name).append(">").append(text).append("</").append(name).append(">\n");
  return line;
}

}  // namespace

void ReportRecord::SetValue(std::string_view element, std::string_view text) {
  deviceValues_.insert_or_assign(std::string(element), text);
}

void ReportRecord::SetDocument(std::string text) { document_ = DeviceDocument(std::move(text)); }

bool ReportRecord::IsValidDate(std::string_view text) { return IsTimeText(text); }

std::string ReportRecord::ElementLines(const ElementValues& values) {
  std::string lines;
  for (const auto& [name, text] : values) lines += ElementLine(name, text);
  return lines;
}

std::string ReportRecord::BuildDocument(std::string_view beforeSupplies, std::string_view afterSupplies) const {
  std::string document = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<root>\n<ZOLT>\n";
  document += ElementLines(deviceValues_);
  document += beforeSupplies;
  document += "<Supplies>\n";
  for (const TonerRecord& toner : toners_) {
    document += "<Toner>\n";
    const std::string_view letter = ColourLetter(toner.Colour());
    // A toner of unknown colour must not pass for a valid one: its element stays open, on purpose, and the validator
    // rejects the document.
    if (letter.empty()) continue;
    document += ElementLine("Color", letter);
    document += ElementLines(toner.Values());
    document += "</Toner>\n";
  }
  document += "</Supplies>\n";
  document += afterSupplies;
  document += "</ZOLT>\n</root>\n";
  return document;
}

bool ReportRecord::ReadReport(const DeviceDocument& document, Codes& codes,
                              const std::function<void(const tinyxml2::XMLElement* report)>& read) {
  const tinyxml2::XMLDocument* tree = document.Tree();
  if (!tree) {
    codes.Add("/xml error");
    return false;
  }
  const std::size_t before = codes.Count();
  const tinyxml2::XMLElement* report = FindReport(*tree);
  if (!report) codes.Add("/no ZOLT el");
  read(report);
  return codes.Count() == before;
}

void ReportRecord::ReadDeviceValues(const tinyxml2::XMLElement* report, std::span<const char* const> elements) {
  for (const char* element : elements) {
    if (const char* text = ChildText(report, element)) SetValue(element, text);
  }
}

void ReportRecord::ReadToners(const tinyxml2::XMLElement* report, Codes& codes) {
  const tinyxml2::XMLElement* toner = FindChild(FindChild(report, "Supplies"), "Toner");
  for (; toner; toner = toner->NextSiblingElement("Toner")) ReadTonerXml(*toner, codes);
}

std::optional<TonerColour> ReportRecord::ReadTonerColour(const tinyxml2::XMLElement& toner, Codes& codes) {
  const char* letter = ChildText(&toner, "Color");
  if (!letter) {
    codes.Add("/no tcolor");
    return std::nullopt;
  }
  const std::optional<TonerColour> colour = ColourOfLetter(letter);
  if (!colour) codes.Add("/invalid tcolor");
  return colour;
}

void ReportRecord::ReadTonerTexts(const tinyxml2::XMLElement& element, std::span<const ElementCode> texts,
                                  TonerRecord& toner, Codes& codes) {
  for (const ElementCode& text : texts) {
    if (const char* value = ChildText(&element, text.element)) {
      toner.SetValue(text.element, value);
    } else {
      codes.Add(text.code);
    }
  }
}

}  // namespace zt
