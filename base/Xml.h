#pragma once

#include <tinyxml2.h>

#include <string_view>

namespace zt {

// TextOf returns the text of an element: that of its first child when this is a text node. Null for a null element, an
// empty element, and one that begins with something else. The text belongs to the element's document.
const char* TextOf(const tinyxml2::XMLElement* element);

// ChildText is TextOf the first child element of that name; null as well when the parent is null or has no such child.
const char* ChildText(const tinyxml2::XMLElement* parent, const char* name);

// FindChild returns the first child element of that name; null when there is none or the parent is null.
const tinyxml2::XMLElement* FindChild(const tinyxml2::XMLNode* parent, const char* name);

// ParseXml parses the document of a printer; false when it is none. It refuses bare ampersands, too.
[[nodiscard]] bool ParseXml(std::string_view xml, tinyxml2::XMLDocument& document);

// HasBareAmpersand reports whether an "&" that begins neither one of XML's five entities nor a character reference
// stands in the text, outside of comments, CDATA sections and processing instructions. XML 1.0 (2.4, 4.1) forbids it;
// TinyXML-2 lets it pass, and behind a reference in the same text reads another character in its place.
bool HasBareAmpersand(std::string_view xml);

}  // namespace zt
