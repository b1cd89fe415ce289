#include "ServerPage.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zt {
namespace {

TEST(ServerPage, SaysWhatWasSentAndWhatItMeans) {
  struct Case {
    ServerQuestion question;
    FormReply reply;
    std::vector<std::wstring> wanted;
  };
  const auto answered = [](const char* answer, std::uint32_t status = 200) {
    return FormReply{FormDelivery::Answered, answer, status, 0};
  };
  const Case cases[] = {
      {ServerQuestion::CheckDate,
       answered("<root><LastDate>2026-11-20</LastDate></root>"),
       {L"URL|http://s/CheckDate.aspx|", L"Request body|SerialNumber=A%20B|", L"Delivery|sent|",
        L"HTTP status|200|The server answers.", L"Understood|yes|",
        L"Last report|2026-11-20|The server has a report of this printer of that day."}},
      {ServerQuestion::CheckDate,
       answered("", 404),
       {L"HTTP status|404|The server has no such page: the base URL is wrong.",
        L"Understood|no|The answer is no XML document with the element root."}},
      {ServerQuestion::CheckDate,
       {FormDelivery::NotSent, "", 0, 12029},
       {L"Delivery|failed|nobody listens there: the server is off, the port is wrong, or a firewall is between",
        L"A run|would store a failure of the server|It holds up the runs of all printers for some days (page "
        L"History)."}},
      {ServerQuestion::CheckSBX,
       {FormDelivery::NotSent, "", 0, 99},
       {L"Delivery|failed|system error 99", L"A run|would go on with the limits that it knows|"}},
      {ServerQuestion::CheckSBX,
       answered("<root><Result>NOMORESERVICE</Result></root>"),
       {L"Service|ended|The server has ended this service. A run switches itself off."}},
      {ServerQuestion::PostReport,
       answered("<root><Result>SUCCESS</Result></root>"),
       {L"URL|http://s/Connector.aspx|", L"Request body|data=%3ca%3e&test=1|Marked as a test by its end, test=1.",
        L"Understood|yes|The server has taken the report, as a test."}},
  };
  for (const Case& row : cases) {
    const ServerRequest request = {row.question, "http://s/", "A B", "M", ReportKind::PrintVolume, "<a>"};
    std::vector<std::wstring> rows;
    for (const auto& [label, value, remark] :
         AskServer(request, [&](const std::string&, std::string_view) { return row.reply; }, {})) {
      rows.push_back(label + L"|" + value + L"|" + remark);
    }
    for (const std::wstring& wanted : row.wanted) {
      EXPECT_NE(std::ranges::find(rows, wanted), rows.end()) << testing::PrintToString(wanted);
    }
  }
}

TEST(ServerPage, SendsNothingThroughAClosedGate) {
  const auto post = [](const std::string&, std::string_view) -> FormReply { throw 0; };
  const std::vector<Row> rows = AskServer({}, post, [] { return false; });
  EXPECT_EQ(rows.back(), (Row{L"Delivery", L"cancelled", L"Nothing was sent."}));
}

}  // namespace
}  // namespace zt
