#include "ReportServerXml.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace zt {
namespace {

using Values = std::map<std::string, std::string, std::less<>>;

std::string Root(std::string_view content) { return "<root>" + std::string(content) + "</root>"; }

constexpr std::string_view fullDateAnswer =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<root>\r\n  <Result>NOMORESERVICE</Result>\r\n"
    "  <LastDate>2024-03-01 10:20:30</LastDate>\r\n  <PostIntervalDays>30</PostIntervalDays>\r\n</root>";

constexpr std::string_view fullSBXAnswer =
    "<?xml version=\"1.0\"?><root><Result>OK</Result><TransmissionDuration>7</TransmissionDuration>"
    "<NSLanguageCode>24, 59</NSLanguageCode><ModelMaxLevel>"
    "<Model><Name>KX 100</Name><Level>110</Level></Model>"
    "<Other><Name>KX 200</Name><Level>1</Level></Other>"
    "<Model><Name>KX 200</Name><Level>120</Level></Model>"
    "<Model><Name>KX 200</Name><Level>130</Level></Model>"
    "</ModelMaxLevel><ServerMaxLevel>150</ServerMaxLevel><NormalIntervalDays>14</NormalIntervalDays></root>";

// Texts that are no answer at all.
const std::vector<std::string> unusable = {
    "",
    " \r\n",
    "Service Unavailable",
    "<html><body>root</body></html>",
    "<Root><Result>SUCCESS</Result></Root>",
    "<answer><root><Result>SUCCESS</Result></root></answer>",
    "<root><Result>SUCCESS</root>",
    "<root",
    std::string("<root\0></root>", 14),
    std::string(100000, '<'),
    [] {  // nested deeper than a parser's stack should follow
      std::string deep = "<root>";
      for (int level = 0; level < 50000; ++level) deep += "<a>";
      return deep;
    }(),
};

TEST(ReadDateAnswer, ReadsWhatIsThere) {
  const struct {
    std::string xml;
    Values values;
  } rows[] = {
      {std::string(fullDateAnswer),
       {{"NoMoreService", "true"}, {"LastDate", "2024-03-01"}, {"PostIntervalDays", "30"}}},
      {"\xef\xbb\xbf" + Root("<PostIntervalDays>7</PostIntervalDays>"), {{"PostIntervalDays", "7"}}},
      {"<root/>", {}},
      {Root("<Result/><LastDate></LastDate><PostIntervalDays> </PostIntervalDays>"), {}},  // there but empty
      {Root("<Result>NOMORESERVICE </Result>"), {}},
      {Root("<Result>nomoreservice</Result>"), {}},
      {Root("<Result>SUCCESS</Result>"), {}},
      {Root("<LastDate>2024-03-0</LastDate>"), {}},  // nine characters
      {Root("<LastDate>2024-03-01</LastDate>"), {{"LastDate", "2024-03-01"}}},
      {Root("<LastDate>not a date at all</LastDate>"), {{"LastDate", "not a date"}}},
      {Root("<PostIntervalDays>soon</PostIntervalDays>"), {{"PostIntervalDays", "soon"}}},
      {Root("<PostIntervalDays>1</PostIntervalDays><PostIntervalDays>2</PostIntervalDays>"),
       {{"PostIntervalDays", "1"}}},
      {Root("<PostIntervalDays><b/>7</PostIntervalDays>"), {}},     // its first node is no text
      {Root("<a><PostIntervalDays>7</PostIntervalDays></a>"), {}},  // not a child of the root
  };
  for (const auto& row : rows) {
    ServerAnswer answer;
    EXPECT_TRUE(ReadDateAnswer(row.xml, answer)) << row.xml;
    EXPECT_EQ(answer.Values(), row.values) << row.xml;
  }
}

TEST(ReadSBXAnswer, ReadsWhatIsThere) {
  const Values plain = {{"TransmissionDuration", "7"}, {"NSLanguageCode", "24, 59"}, {"PPNormalIntervalDays", "14"}};
  const auto with = [&](std::string life) {
    Values values = plain;
    values["TonerMaxLife"] = std::move(life);
    return values;
  };
  const std::string full(fullSBXAnswer);
  const struct {
    std::string xml;
    std::string model;
    Values values;
  } rows[] = {
      {full, "KX 100", with("110")},
      {full, "KX 200", with("120")},  // of two, the first; only Model elements count
      {full, "KX 300", with("150")},
      {full, "kx 100", with("150")},
      {full, "KX 10", with("150")},
      {full, "KX 1000", with("150")},
      {full, "", with("150")},
      {Root("<Result>NOMORESERVICE</Result>"), "KX 100", {{"NoMoreService", "true"}}},
      {Root("<ModelMaxLevel/>"), "KX 100", {}},
      {Root("<ModelMaxLevel><Model/><Model><Name/></Model></ModelMaxLevel>"), "", {}},
      // A matching model without a level leaves the server's general one.
      {Root("<ModelMaxLevel><Model><Name>A</Name></Model></ModelMaxLevel><ServerMaxLevel>9</ServerMaxLevel>"),
       "A",
       {{"TonerMaxLife", "9"}}},
      {"<root/>", "A", {}},
  };
  for (const auto& row : rows) {
    ServerAnswer answer;
    EXPECT_TRUE(ReadSBXAnswer(row.xml, row.model, answer)) << row.xml;
    EXPECT_EQ(answer.Values(), row.values) << row.model << " in " << row.xml;
  }
}

TEST(ReadUploadResult, ComparesTheWholeText) {
  const struct {
    std::string xml;
    UploadResult result;
  } rows[] = {
      {Root("<Result>SUCCESS</Result>"), UploadResult::Success},
      {Root("<Other/><Result>SUCCESS</Result><Result>FAIL</Result>"), UploadResult::Success},
      {Root("<Result>NOMORESERVICE</Result>"), UploadResult::NoMoreService},
      {Root("<Result>SUCCESS </Result>"), UploadResult::Unknown},
      {Root("<Result> SUCCESS</Result>"), UploadResult::Unknown},
      {Root("<Result>Success</Result>"), UploadResult::Unknown},
      {Root("<Result>SUCCES</Result>"), UploadResult::Unknown},
      {Root("<Result>NOMORESERVICES</Result>"), UploadResult::Unknown},
      {Root("<Result/>"), UploadResult::Missing},
      {Root("<result>SUCCESS</result>"), UploadResult::Missing},
  };
  for (const auto& row : rows) EXPECT_EQ(ReadUploadResult(row.xml), row.result) << row.xml;
}

void ExpectUnusable(const std::string& xml) {
  ServerAnswer answer;
  answer.SetLastDate("kept");
  EXPECT_FALSE(ReadDateAnswer(xml, answer)) << xml.substr(0, 100);
  EXPECT_FALSE(ReadSBXAnswer(xml, "KX 100", answer)) << xml.substr(0, 100);
  EXPECT_EQ(ReadUploadResult(xml), UploadResult::Missing) << xml.substr(0, 100);
  EXPECT_EQ(answer.Values(), (Values{{"LastDate", "kept"}}));
}

TEST(ReportServerXml, UnusableTextsSetNothing) {
  for (const std::string& xml : unusable) ExpectUnusable(xml);
  for (const std::string_view whole : {fullDateAnswer, fullSBXAnswer}) {
    for (std::size_t length = 0; length < whole.size(); ++length) {
      // A buffer of exactly that size, so that the sanitizer sees a byte read too many.
      const std::string prefix(whole.substr(0, length));
      ExpectUnusable(prefix);
    }
  }
}

}  // namespace
}  // namespace zt
