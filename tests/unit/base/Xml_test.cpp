#include "Xml.h"

#include <gtest/gtest.h>

#include <string>

namespace zt {
namespace {

TEST(Xml, TextIsThatOfALeadingTextNode) {
  const struct {
    const char* xml;
    const char* text;  // null: none
  } rows[] = {
      {"<e>a</e>", "a"},
      {"<e> a </e>", " a "},
      {"<e/>", nullptr},
      {"<e>  </e>", nullptr},
      {"<e><f>a</f></e>", nullptr},
      {"<e><!-- c -->a</e>", nullptr},
      {"<e><![CDATA[a]]></e>", "a"},
      {"<e><![CDATA[]]></e>", nullptr},
      {"<e>a<f/>b</e>", "a"},
      {"<e>&amp;</e>", "&"},
  };
  for (const auto& row : rows) {
    tinyxml2::XMLDocument document;
    ASSERT_EQ(document.Parse(row.xml), tinyxml2::XML_SUCCESS) << row.xml;
    EXPECT_STREQ(TextOf(FindChild(&document, "e")), row.text) << row.xml;
  }
  EXPECT_EQ(ChildText(nullptr, "e"), nullptr);
}

TEST(Xml, BareAmpersand) {
  const struct {
    const char* xml;
    bool bare;
  } rows[] = {
      {"<e>a & b</e>", true},
      {"<e>&;</e>", true},
      {"<e>&1;</e>", true},
      {"<e>&a b;</e>", true},
      {"<e>&#;</e>", true},
      {"<e>&#x;</e>", true},
      // The neighbours of the digits, and the outermost digits.
      {"<e>&#1/;</e>", true},
      {"<e>&#1:;</e>", true},
      {"<e>&#x1/;</e>", true},
      {"<e>&#x1:;</e>", true},
      {"<e>&#x1@;</e>", true},
      {"<e>&#x1G;</e>", true},
      {"<e>&#x1`;</e>", true},
      {"<e>&#x1g;</e>", true},
      {"<e>&#1099;&#x09AFaf;</e>", false},
      {"<e a='&'/>", true},
      {"&", true},
      {"<!-- & --><e>&</e>", true},
      {"<e>&amp;&lt;&#38;&#x26;</e>", false},
      {"<e>&amp; &my-name;</e>", true},  // declared or not: the parser knows XML's own only
      {"<e><!-- a & b --></e>", false},
      {"<e><![CDATA[a & b]]></e>", false},
      {"<?xml & ?><e/>", false},
      {"<!-- & ", false},  // unclosed markup fails in the parser anyway
      {"", false},
  };
  for (const auto& row : rows) EXPECT_EQ(HasBareAmpersand(row.xml), row.bare) << row.xml;
}

}  // namespace
}  // namespace zt
