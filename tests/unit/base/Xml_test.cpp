#include "Xml.h"

#include <gtest/gtest.h>

namespace zt {
namespace {

TEST(Xml, TextIsThatOfALeadingTextNode) {
  const struct {
    const char* xml;
    const char* text;  // null: none
  } rows[] = {
      {"<e> a<f/>b</e>", " a"},
      {"<e><f>a</f></e>", nullptr},
      {"<e><!-- c -->a</e>", nullptr},
      {"<e><![CDATA[]]></e>", nullptr},
  };
  for (const auto& row : rows) {
    tinyxml2::XMLDocument document;
    ASSERT_EQ(document.Parse(row.xml), tinyxml2::XML_SUCCESS) << row.xml;
    EXPECT_STREQ(TextOf(FindChild(&document, "e")), row.text) << row.xml;
  }
  EXPECT_EQ(ChildText(nullptr, "e"), nullptr);
}

TEST(Xml, BareAmpersand) {
  // The neighbours of the digits among them; of named entities the parser knows XML's own only.
  for (const char* bare : {"a & b", "&;", "&1;", "&a b;", "&my-name;", "&#;", "&#x;", "&#1/;", "&#1:;", "&#x1/;",
                           "&#x1:;", "&#x1@;", "&#x1G;", "&#x1`;", "&#x1g;", "<e a='&'/>", "&", "<!-- & -->&amp;&"}) {
    EXPECT_TRUE(HasBareAmpersand(bare)) << bare;
  }
  // Markup that is not closed fails in the parser anyway.
  for (const char* clean :
       {"", "&amp;&lt;&#1099;&#x09AFaf;", "<!-- a & b -->", "<![CDATA[a & b]]>", "<?a & ?>", "<!--&"}) {
    EXPECT_FALSE(HasBareAmpersand(clean)) << clean;
  }
}

}  // namespace
}  // namespace zt
