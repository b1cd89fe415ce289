#include "IniText.h"

#include <gtest/gtest.h>

namespace zt {
namespace {

TEST(IniTextTest, ParsesLeniently) {
  struct Row {
    std::string_view text;
    IniSections sections;
  };
  const Row rows[] = {
      {"[Common]\nA=1", {{"Common", {{"A", "1"}}}}},
      {"[ Common ]\n A  =  1 \r\n", {{"Common", {{"A", "1"}}}}},
      {"[Common] ; note\nA=1;2\n;B=2\n", {{"Common", {{"A", "1"}}}}},
      {"[S]\nA=1=2\n=3\nB=\nno equals sign\n\n", {{"S", {{"", "3"}, {"A", "1=2"}, {"B", ""}}}}},
      {"A=0\n[S]\nB=1\n", {{"S", {{"B", "1"}}}}},                  // a key before the first section
      {"[S]\nA=1\n[]\nB=2\n", {{"S", {{"A", "1"}}}}},              // a section without a name
      {"[A]\n[B]\nX=1\n[C]\n", {{"A", {}}, {"B", {{"X", "1"}}}}},  // only the last empty section goes
      {"[S]\nA=1\n[T]\nB=1\n[S]\nA=2\nC=3\nC=4\n", {{"S", {{"A", "1"}, {"C", "3"}}}, {"T", {{"B", "1"}}}}},
      {"[S]\n[A=1\n", {{"S", {{"[A", "1"}}}}},
      {std::string_view("[S]\nA\0B=\xFF\x80\0\n", 13),
       {{"S", {{std::string("A\0B", 3), std::string("\xFF\x80\0", 3)}}}}},
  };
  for (const Row& row : rows) EXPECT_EQ(ParseIni(row.text), row.sections) << row.text;
}

TEST(IniTextTest, FormatsInByteOrder) {
  const IniSections sections = {{"History", {{"b", "2"}, {"B", "1"}, {"a", ""}}}, {"Common", {}}};
  EXPECT_EQ(FormatIni(sections), "[Common]\r\n[History]\r\nB=1\r\na=\r\nb=2\r\n");
  // A serial number or a server's answer cannot start a line of its own.
  EXPECT_EQ(FormatIni({{"S", {{"K_\n", "24\r\n[T]\nZOLTEnabled=2"}}}}), "[S]\r\nK_ =24  [T] ZOLTEnabled=2\r\n");
}

}  // namespace
}  // namespace zt
