#include "Xml.h"

#include <algorithm>

#include "Hex.h"

namespace zt {
namespace {

// Markup whose content is not parsed for entities.
struct Opaque {
  std::string_view open;
  std::string_view close;
};
constexpr Opaque kOpaqueMarkup[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};

// XML's own entities (XML 1.0, 4.6). What a document declares beside them the parser does not read.
constexpr std::string_view kEntities[] = {"amp", "apos", "gt", "lt", "quot"};

// `text` begins right after the "&".
bool IsReference(std::string_view text) {
  const std::size_t semicolon = text.find(';');
  if (semicolon == std::string_view::npos || semicolon == 0) return false;
  std::string_view name = text.substr(0, semicolon);
  if (name.front() != '#') return std::find(std::begin(kEntities), std::end(kEntities), name) != std::end(kEntities);
  name.remove_prefix(1);
  const bool hexadecimal = name.starts_with('x');
  if (hexadecimal) name.remove_prefix(1);
  return !name.empty() && std::all_of(name.begin(), name.end(), hexadecimal ? IsHexDigit : IsDecimalDigit);
}

}  // namespace

const char* TextOf(const tinyxml2::XMLElement* element) {
  // GetText() is not used: it looks past a leading comment.
  const tinyxml2::XMLNode* first = element ? element->FirstChild() : nullptr;
  const tinyxml2::XMLText* text = first ? first->ToText() : nullptr;
  return text && *text->Value() ? text->Value() : nullptr;
}

const tinyxml2::XMLElement* FindChild(const tinyxml2::XMLNode* parent, const char* name) {
  return parent ? parent->FirstChildElement(name) : nullptr;
}

const char* ChildText(const tinyxml2::XMLElement* parent, const char* name) { return TextOf(FindChild(parent, name)); }

bool ParseXml(std::string_view xml, tinyxml2::XMLDocument& document) {
  return document.Parse(xml.data(), xml.size()) == tinyxml2::XML_SUCCESS && !HasBareAmpersand(xml);
}

bool HasBareAmpersand(std::string_view xml) {
  while (true) {
    xml.remove_prefix(std::min(xml.find_first_of("&<"), xml.size()));
    if (xml.empty()) return false;
    if (xml.front() == '&') {
      xml.remove_prefix(1);
      if (!IsReference(xml)) return true;
      continue;
    }
    const auto* opaque = std::find_if(std::begin(kOpaqueMarkup), std::end(kOpaqueMarkup),
                                      [&](const Opaque& markup) { return xml.starts_with(markup.open); });
    if (opaque == std::end(kOpaqueMarkup)) {
      xml.remove_prefix(1);
      continue;
    }
    const std::size_t close = xml.find(opaque->close, opaque->open.size());
    if (close == std::string_view::npos) return false;
    xml.remove_prefix(close + opaque->close.size());
  }
}

}  // namespace zt
