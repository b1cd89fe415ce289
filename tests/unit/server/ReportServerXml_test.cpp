#include "ReportServerXml.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace zt {
namespace {

using Values = std::map<std::string, std::string, std::less<>>;

std::string Root(std::string_view content) { return "<root>" + std::string(content) + "</root>"; }

const std::string fullDateAnswer =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<root>\r\n  <Result>NOMORESERVICE</Result>\r\n"
    "  <LastDate>2024-03-01 10:20:30</LastDate>\r\n  <PostIntervalDays>30</PostIntervalDays>\r\n</root>";

const std::string fullSBXAnswer =
    "<?xml version=\"1.0\"?><root><Result>OK</Result><TransmissionDuration>7</TransmissionDuration>"
    "<NSLanguageCode>24, 59</NSLanguageCode><ModelMaxLevel><Model><Name>KX 100</Name><Level>110</Level></Model>"
    "<Other><Name>KX 200</Name><Level>1</Level></Other><Model><Name>KX 200</Name><Level>120</Level></Model>"
    "<Model><Name>KX 200</Name><Level>130</Level></Model></ModelMaxLevel><ServerMaxLevel>150</ServerMaxLevel>"
    "<NormalIntervalDays>14</NormalIntervalDays></root>";

TEST(ReadDateAnswer, ReadsWhatIsThere) {
  const struct {
    std::string xml;
    Values values;
  } rows[] = {
      {fullDateAnswer, {{"NoMoreService", "true"}, {"LastDate", "2024-03-01"}, {"PostIntervalDays", "30"}}},
      {"\xef\xbb\xbf" + Root("<PostIntervalDays>7</PostIntervalDays>"), {{"PostIntervalDays", "7"}}},
      {Root("<Result/><LastDate></LastDate><PostIntervalDays> </PostIntervalDays>"), {}},  // there but empty
      {Root("<Result>NOMORESERVICE </Result>"), {}},
      {Root("<LastDate>2024-03-0</LastDate>"), {}},  // nine characters
      {Root("<LastDate>not a date at all</LastDate>"), {{"LastDate", "not a date"}}},
      {Root("<PostIntervalDays>soon</PostIntervalDays><PostIntervalDays>2</PostIntervalDays>"),
       {{"PostIntervalDays", "soon"}}},
      {Root("<a><PostIntervalDays>7</PostIntervalDays></a>"), {}},  // not a child of the root
  };
  for (const auto& row : rows) {
    ServerAnswer answer;
    EXPECT_TRUE(ReadDateAnswer(row.xml, answer)) << row.xml;
    EXPECT_EQ(answer.Values(), row.values) << row.xml;
  }
}

TEST(ReadSBXAnswer, ReadsWhatIsThere) {
  const auto with = [&](std::string life) {
    Values values = {{"TransmissionDuration", "7"}, {"NSLanguageCode", "24, 59"}, {"PPNormalIntervalDays", "14"}};
    values["TonerMaxLife"] = std::move(life);
    return values;
  };
  const struct {
    std::string xml;
    std::string model;
    Values values;
  } rows[] = {
      {fullSBXAnswer, "KX 100", with("110")},
      {fullSBXAnswer, "KX 200", with("120")},  // of two, the first; only Model elements count
      {fullSBXAnswer, "kx 100", with("150")},
      {fullSBXAnswer, "KX 1000", with("150")},
      {fullSBXAnswer, "", with("150")},
      {Root("<Result>NOMORESERVICE</Result>"), "KX 100", {{"NoMoreService", "true"}}},
      {Root("<ModelMaxLevel><Model/><Model><Name/></Model></ModelMaxLevel>"), "", {}},
      // A matching model without a level leaves the server's general one.
      {Root("<ModelMaxLevel><Model><Name>A</Name></Model></ModelMaxLevel><ServerMaxLevel>9</ServerMaxLevel>"),
       "A",
       {{"TonerMaxLife", "9"}}},
  };
  for (const auto& row : rows) {
    ServerAnswer answer;
    EXPECT_TRUE(ReadSBXAnswer(row.xml, row.model, answer)) << row.xml;
    EXPECT_EQ(answer.Values(), row.values) << row.model << " in " << row.xml;
  }
}

TEST(ReadUploadResult, ComparesTheWholeText) {
  const struct {
    const char* content;
    UploadResult result;
  } rows[] = {
      {"<Other/><Result>SUCCESS</Result><Result>FAIL</Result>", UploadResult::Success},
      {"<Result>NOMORESERVICE</Result>", UploadResult::NoMoreService},
      {"<Result>SUCCESS </Result>", UploadResult::Unknown},
      {"<Result>NOMORESERVICES</Result>", UploadResult::Unknown},
      {"<result>SUCCESS</result>", UploadResult::Missing},
  };
  for (const auto& row : rows) EXPECT_EQ(ReadUploadResult(Root(row.content)), row.result) << row.content;
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
  for (const char* xml :
       {"", "Service Unavailable", "<html><body>root</body></html>", "<Root><Result>SUCCESS</Result></Root>",
        "<root><Result>SUCCESS</root>", "<answer><root><Result>SUCCESS</Result></root></answer>"}) {
    ExpectUnusable(xml);
  }
  ExpectUnusable(std::string("<root\0></root>", 14));
  ExpectUnusable(std::string(100000, '<'));
  for (const std::string& whole : {fullDateAnswer, fullSBXAnswer}) {
    // A buffer of exactly that size, so that the sanitizer sees a byte read too many.
    for (std::size_t length = 0; length < whole.size(); ++length) ExpectUnusable(whole.substr(0, length));
  }
}

}  // namespace
}  // namespace zt
