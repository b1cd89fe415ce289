#include "ServerPage.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zt {
namespace {

TEST(ServerPage, SaysWhatWasSentAndWhatItMeans) {
  struct Case {
    ServerQuestion question;
    FormReply reply;
    std::vector<std::wstring> rows;
    bool open = true;
  };
  using enum ServerQuestion;
  using enum FormDelivery;
  const Case cases[] = {
      {CheckDate,
       {Answered, "<root><LastDate>2026-11-20</LastDate></root>", 200, 0},
       {L"URL|http://s/CheckDate.aspx", L"Request body|SerialNumber=A%20B", L"HTTP status|200", L"Understood|yes",
        L"Last report|2026-11-20"}},
      {CheckDate, {Answered, "", 404, 0}, {L"Understood|no", L"A run|would store a failure of the server"}},
      {CheckSBX, {NotSent, "", 0, 99}, {L"Delivery|failed", L"A run|would go on with the limits that it knows"}},
      {CheckSBX, {Answered, "<root><Result>NOMORESERVICE</Result></root>", 200, 0}, {L"Service|ended"}},
      {PostReport, {}, {L"Request body|data=%3ca%3e&test=1", L"Delivery|cancelled"}, false},
  };
  for (const Case& row : cases) {
    bool sent = false;
    std::vector<std::wstring> rows;
    for (const Row& shown : AskServer(
             {row.question, "http://s/", "A B", "M", ReportKind::PrintVolume, "<a>"},
             [&](const std::string&, std::string_view) {
               sent = true;
               return row.reply;
             },
             [&] { return row.open; })) {
      rows.push_back(shown.label + L"|" + shown.value);
    }
    EXPECT_EQ(sent, row.open);
    for (const std::wstring& wanted : row.rows) {
      EXPECT_EQ(std::ranges::count(rows, wanted), 1) << testing::PrintToString(wanted);
    }
  }
}

}  // namespace
}  // namespace zt
