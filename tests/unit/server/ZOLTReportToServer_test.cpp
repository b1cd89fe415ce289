#include "ZOLTReportToServer.h"

#include <gtest/gtest.h>

#include <map>
#include <utility>
#include <vector>

#include "TraceCapture.h"

namespace zt {
namespace {

using Texts = std::vector<std::string>;
using Values = std::map<std::string, std::string, std::less<>>;

const FormReply notConnected{FormDelivery::NotConnected, {}};
const FormReply notSent{FormDelivery::NotSent, {}};

FormReply Answered(std::string answer) { return {FormDelivery::Answered, std::move(answer)}; }

FormReply Result(const std::string& text) { return Answered("<root><Result>" + text + "</Result></root>"); }

class ZOLTReportToServerTest : public testing::Test {
 protected:
  ZOLTReportToServerTest() { answer.SetLastDate("left over"); }

  TraceCapture traces;
  std::vector<FormReply> replies;  // in order
  Texts requests;                  // "URL body"
  std::vector<std::uint32_t> sleeps;
  ZOLTReportToServer server{[this](const std::string& url, std::string_view body) {
                              requests.push_back(url + " " + std::string(body));
                              return replies.at(requests.size() - 1);
                            },
                            [this](std::uint32_t milliseconds) { sleeps.push_back(milliseconds); }};
  ServerAnswer answer;
};

TEST_F(ZOLTReportToServerTest, EachExchangePostsItsFormToItsPage) {
  replies = {Answered("<root><PostIntervalDays>30</PostIntervalDays></root>"),
             Answered("<root><ServerMaxLevel>150</ServerMaxLevel></root>"), Result("SUCCESS"), Result("SUCCESS")};
  EXPECT_TRUE(server.CheckDate("AB 12&x=1", answer));
  EXPECT_EQ(answer.Values(), (Values{{"PostIntervalDays", "30"}})) << "the answer is emptied first";
  server.SetBaseURL("http://server/web/");
  EXPECT_TRUE(server.CheckSBX("KX 100", answer));
  EXPECT_EQ(answer.Values(), (Values{{"TonerMaxLife", "150"}}));
  EXPECT_TRUE(traces.lines.empty()) << "the checks trace nothing";
  EXPECT_TRUE(server.PostZOLT("<a/>", answer));
  EXPECT_TRUE(answer.Values().empty());
  server.SetTestMode(true);
  EXPECT_TRUE(server.PostSBX("<b/>", answer));
  EXPECT_EQ(requests,
            (Texts{ZT_REPORT_BASE_URL "CheckDate.aspx SerialNumber=AB%2012%26x%3d1",
                   "http://server/web/CheckSBX.aspx SBX=1", "http://server/web/Connector.aspx data=%3ca%2f%3e",
                   "http://server/web/ConnectorSBX.aspx data=%3cb%2f%3e&test=1"}));
}

TEST_F(ZOLTReportToServerTest, ChecksFailWithoutAUsableAnswer) {
  replies = {notConnected, notSent, Answered("<html/>"), Answered("<html/>")};
  EXPECT_FALSE(server.CheckDate("1", answer) || server.CheckSBX("KX", answer));
  EXPECT_FALSE(server.CheckDate("1", answer) || server.CheckSBX("KX", answer));
  EXPECT_TRUE(answer.Values().empty());
  server.SetDontCheckSkip(true);
  EXPECT_TRUE(server.CheckDate("1", answer) && server.CheckSBX("KX", answer));
  EXPECT_TRUE(answer.Values().empty());
  EXPECT_EQ(requests.size(), replies.size()) << "without checks nothing is sent";
}

TEST_F(ZOLTReportToServerTest, UploadsTraceTheirAttemptsAndVerdict) {
  const std::string start = "4 Start uploading...";
  const std::string connect = "2 Can't connect to server";
  const std::string post = "2 Failed to post !!!";
  const std::string again = "3 Retry to server...";
  const struct {
    const char* name;
    std::uint32_t retryCount;
    std::vector<FormReply> replies;
    bool succeeded;
    bool noMoreService;
    Texts traces;
  } rows[] = {
      {"taken", 2, {Result("SUCCESS")}, true, false, {start}},
      {"ended", 2, {Result("NOMORESERVICE")}, true, true, {start}},
      {"trailing blank", 2, {Result("SUCCESS ")}, false, false, {start, "2 Unknown Result !!!"}},
      {"longer", 2, {Result("NOMORESERVICES")}, false, false, {start, "2 Unknown Result !!!"}},
      {"two results", 2, {Result("SUCCESS</Result><Result>FAIL")}, true, false, {start}},
      {"no result", 2, {Answered("<root><result/></root>")}, false, false, {start, "2 Can't get result !!!"}},
      {"no XML, or a status other than 200", 2, {Answered("")}, false, false, {start, "2 Can't get result !!!"}},
      {"one attempt", 0, {notConnected}, false, false, {start, connect}},
      {"three attempts", 2, {notConnected, notSent, notSent}, false, false, {start, connect, again, post, again, post}},
      {"last attempt", 1, {notSent, Result("SUCCESS")}, true, false, {start, post, again}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    replies = row.replies;
    requests.clear();
    sleeps.clear();
    traces.lines.clear();
    server.SetRetryCount(row.retryCount);
    EXPECT_EQ(server.PostZOLT("x", answer), row.succeeded);
    EXPECT_EQ(answer.IsNoMoreService(), row.noMoreService);
    EXPECT_EQ(requests.size(), row.replies.size());
    EXPECT_EQ(sleeps, std::vector<std::uint32_t>(row.replies.size() - 1, 3000));
    EXPECT_EQ(traces.Texts(), row.traces);
  }
}

}  // namespace
}  // namespace zt
