#include "ReportServerXml.h"

#include "Xml.h"

namespace zt {
namespace {

// Null when the text is no XML document or its root element has another name.
const tinyxml2::XMLElement* ParseRoot(tinyxml2::XMLDocument& document, std::string_view xml) {
  if (document.Parse(xml.data(), xml.size()) != tinyxml2::XML_SUCCESS) return nullptr;
  return document.FirstChildElement("root");
}

UploadResult ReadResult(const tinyxml2::XMLElement* root) {
  const char* text = ChildText(root, "Result");
  if (!text) return UploadResult::Missing;
  const std::string_view result = text;
  if (result == "SUCCESS") return UploadResult::Success;
  return result == "NOMORESERVICE" ? UploadResult::NoMoreService : UploadResult::Unknown;
}

// The limit of the first Model with that name; null when there is none or it has no text.
const char* FindModelLevel(const tinyxml2::XMLElement* models, std::string_view modelName) {
  for (const auto* model = FindChild(models, "Model"); model; model = model->NextSiblingElement("Model")) {
    const char* name = ChildText(model, "Name");
    if (name && name == modelName) return ChildText(model, "Level");
  }
  return nullptr;
}

}  // namespace

bool ReadDateAnswer(std::string_view xml, ServerAnswer& answer) {
  constexpr std::size_t kDateLength = 10;  // YYYY-MM-DD
  tinyxml2::XMLDocument document;
  const tinyxml2::XMLElement* root = ParseRoot(document, xml);
  if (!root) return false;
  if (ReadResult(root) == UploadResult::NoMoreService) answer.SetNoMoreService();
  if (const char* text = ChildText(root, "LastDate")) {
    const std::string_view date = text;
    if (date.size() >= kDateLength) answer.SetLastDate(date.substr(0, kDateLength));
  }
  if (const char* days = ChildText(root, "PostIntervalDays")) answer.SetPostIntervalDays(days);
  return true;
}

bool ReadSBXAnswer(std::string_view xml, std::string_view modelName, ServerAnswer& answer) {
  tinyxml2::XMLDocument document;
  const tinyxml2::XMLElement* root = ParseRoot(document, xml);
  if (!root) return false;
  if (ReadResult(root) == UploadResult::NoMoreService) answer.SetNoMoreService();
  if (const char* days = ChildText(root, "TransmissionDuration")) answer.SetTransmissionDuration(days);
  if (const char* codes = ChildText(root, "NSLanguageCode")) answer.SetNSLanguageCode(codes);
  const char* level = FindModelLevel(FindChild(root, "ModelMaxLevel"), modelName);
  if (!level) level = ChildText(root, "ServerMaxLevel");
  if (level) answer.SetTonerMaxLife(level);
  if (const char* days = ChildText(root, "NormalIntervalDays")) answer.SetPPNormalIntervalDays(days);
  return true;
}

UploadResult ReadUploadResult(std::string_view xml) {
  tinyxml2::XMLDocument document;
  return ReadResult(ParseRoot(document, xml));
}

}  // namespace zt
