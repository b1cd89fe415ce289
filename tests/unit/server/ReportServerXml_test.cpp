#include "ReportServerXml.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace zt {
namespace {

using Values = std::map<std::string, std::string, std::less<>>;

std::string Root(std::string_view content) { return "<root>" + std::string(content) + "</root>"; }

TEST(ReadDateAnswer, ReadsWhatIsThere) {
  const struct {
    std::string xml;
    Values values;
  } rows[] = {
      {"<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<root>\r\n  <Result>NOMORESERVICE</Result>\r\n"
       "  <LastDate>2024-03-01 10:20:30</LastDate>\r\n  <PostIntervalDays>30</PostIntervalDays>\r\n</root>",
       {{"NoMoreService", "true"}, {"LastDate", "2024-03-01"}, {"PostIntervalDays", "30"}}},
      {"\xef\xbb\xbf" + Root("<PostIntervalDays>7</PostIntervalDays>"), {{"PostIntervalDays", "7"}}},
      {Root("<Result/><LastDate></LastDate><PostIntervalDays> </PostIntervalDays>"), {}},  // there but empty
      // Nine characters; not a child of the root.
      {Root("<LastDate>2024-03-0</LastDate><a><PostIntervalDays>7</PostIntervalDays></a>"), {}},
      {Root("<LastDate>not a date at all</LastDate><PostIntervalDays>soon</PostIntervalDays><PostIntervalDays/>"),
       {{"LastDate", "not a date"}, {"PostIntervalDays", "soon"}}},
  };
  for (const auto& row : rows) {
    ServerAnswer answer;
    EXPECT_TRUE(ReadDateAnswer(row.xml, answer)) << row.xml;
    EXPECT_EQ(answer.Values(), row.values) << row.xml;
  }
}

TEST(ReadSBXAnswer, TakesTheLimitOfTheModel) {
  const std::string full = Root(
      "<Result>NOMORESERVICE</Result><TransmissionDuration>7</TransmissionDuration>"
      "<NSLanguageCode>24, 59</NSLanguageCode><ModelMaxLevel><Model><Name>KX 100</Name><Level>110</Level></Model>"
      "<Other><Name>KX 200</Name><Level>1</Level></Other><Model><Name>KX 200</Name><Level>120</Level></Model>"
      "<Model><Name>KX 200</Name><Level>130</Level></Model><Model><Name>A</Name></Model><Model/></ModelMaxLevel>"
      "<ServerMaxLevel>150</ServerMaxLevel><NormalIntervalDays>14</NormalIntervalDays>");
  const auto read = [&](std::string_view model) {
    ServerAnswer answer;
    EXPECT_TRUE(ReadSBXAnswer(full, model, answer)) << model;
    return answer.Values();
  };
  Values values = {{"NoMoreService", "true"},
                   {"TransmissionDuration", "7"},
                   {"NSLanguageCode", "24, 59"},
                   {"TonerMaxLife", "110"},
                   {"PPNormalIntervalDays", "14"}};
  EXPECT_EQ(read("KX 100"), values);
  values["TonerMaxLife"] = "120";  // of two, the first; only Model elements count
  EXPECT_EQ(read("KX 200"), values);
  values["TonerMaxLife"] = "150";  // the server's general one, "A" has none of its own
  for (const char* model : {"A", "kx 100", "KX 1000", ""}) EXPECT_EQ(read(model), values) << model;
  ServerAnswer nothing;
  EXPECT_TRUE(ReadSBXAnswer("<root><ModelMaxLevel/></root>", "", nothing));
  EXPECT_TRUE(nothing.Values().empty());
}

TEST(ReportServerXml, UnusableTextsSetNothing) {
  using namespace std::string_literals;
  for (const std::string& xml :
       {""s, "Service Unavailable"s, "<Root><Result>SUCCESS</Result></Root>"s, "<root><Result>SUCCESS</root>"s,
        "<a><root><Result>SUCCESS</Result></root></a>"s, "<root\0></root>"s, std::string(100000, '<')}) {
    ServerAnswer answer;
    EXPECT_FALSE(ReadDateAnswer(xml, answer)) << xml.substr(0, 100);
    EXPECT_FALSE(ReadSBXAnswer(xml, "KX 100", answer)) << xml.substr(0, 100);
    EXPECT_EQ(ReadUploadResult(xml), UploadResult::Missing) << xml.substr(0, 100);
    EXPECT_TRUE(answer.Values().empty());
  }
}

}  // namespace
}  // namespace zt
