#include "ServerPage.h"

#include <algorithm>
#include <utility>

#include "Words.h"
#include "ZOLTReportToServer.h"

namespace zt {
namespace {

struct ErrorText {
  std::uint32_t error;
  std::wstring_view text;
};
// WinINet's numbers.
constexpr ErrorText kErrors[] = {
    {12002, L"nothing came back in time"},
    {12005, L"the URL is not valid"},
    {12006, L"the URL begins with neither http nor https"},
    {12007, L"the server's name is not known: it is wrong, or this computer reaches no name server"},
    {12029, L"nobody listens there: the server is off, the port is wrong, or a firewall is between"},
    {12030, L"the server ended the connection"},
    {12031, L"the server reset the connection"},
    {12152, L"what listens there is no web server: its answer is not HTTP"},
    {12157, L"no secure connection: server and this computer share no encryption"},
    {12175, L"no secure connection: the server's certificate is not accepted"},
};

struct StatusText {
  std::uint32_t status;
  std::wstring_view text;
};
constexpr StatusText kStatuses[] = {
    {200, L"The server answers."},
    {401, L"The server wants a login."},
    {403, L"The server refuses."},
    {404, L"The server has no such page: the base URL is wrong."},
    {407, L"The proxy wants a login."},
    {500, L"The server failed."},
    {502, L"A proxy does not reach the server."},
    {503, L"The server is overloaded, or down for maintenance."},
    {504, L"A proxy gets no answer of the server in time."},
};

struct ValueText {
  std::string_view key;
  std::wstring_view label;
  std::wstring_view remark;
};
constexpr ValueText kValues[] = {
    {"NoMoreService", L"Service", L"The server has ended this service. A run switches itself off."},
    {"LastDate", L"Last report", L"The server has a report of this printer of that day."},
    {"PostIntervalDays", L"Days between reports", L""},
    {"TransmissionDuration", L"Days between protection reports", L""},
    {"NSLanguageCode", L"Countries", L"Nobody is asked to agree there."},
    {"TonerMaxLife", L"Toner life limit", L"Of this model, or else of all."},
    {"PPNormalIntervalDays", L"Days between normal reports", L"No run sends those."},
};

struct Exchange {
  std::string url;
  std::string body;
  bool cancelled = false;
  FormReply reply;
};

bool Ask(ZOLTReportToServer& server, const ServerRequest& request, ServerAnswer& answer) {
  switch (request.question) {
    case ServerQuestion::CheckDate:
      return server.CheckDate(request.serialNumber, answer);
    case ServerQuestion::CheckSBX:
      return server.CheckSBX(request.modelName, answer);
    case ServerQuestion::PostReport:
      break;
  }
  return request.kind == ReportKind::PrintVolume ? server.PostZOLT(request.document, answer)
                                                 : server.PostSBX(request.document, answer);
}

Row DeliveryRow(const Exchange& exchange) {
  Row row{L"Delivery", L"", L""};
  if (exchange.cancelled) {
    row.value = L"cancelled";
    row.remark = L"Nothing was sent.";
  } else if (exchange.reply.delivery == FormDelivery::Answered) {
    row.value = L"sent";
  } else {
    row.value = exchange.reply.delivery == FormDelivery::NotConnected ? L"not sent" : L"failed";
    row.remark = WhyNoDelivery(exchange.reply);
  }
  return row;
}

Row StatusRow(std::uint32_t status) {
  const auto* known =
      std::ranges::find_if(kStatuses, [status](const StatusText& text) { return text.status == status; });
  const std::wstring_view meaning =
      known == std::end(kStatuses) ? L"The server does not take the request." : known->text;
  return {L"HTTP status", status == 0 ? L"none" : std::to_wstring(status),
          status == 0 ? L"What answered is no web server." : std::wstring(meaning)};
}

Row ValueRow(const std::string& key, const std::string& value) {
  const auto* known = std::ranges::find_if(kValues, [&](const ValueText& text) { return text.key == key; });
  if (known == std::end(kValues)) return {Shown(key), Shown(value), L""};
  if (key == "NoMoreService") return {std::wstring(known->label), L"ended", std::wstring(known->remark)};
  return {std::wstring(known->label), Shown(value), std::wstring(known->remark)};
}

Row UnderstoodRow(bool post, bool succeeded, bool empty) {
  Row row{L"Understood", succeeded ? L"yes" : L"no", L""};
  if (post) {
    row.remark = succeeded ? L"The server has taken the report, as a test."
                           : L"The server has not taken the report: its result is neither SUCCESS nor NOMORESERVICE.";
  } else if (!succeeded) {
    row.remark = L"The answer is no XML document with the element root.";
  } else if (empty) {
    row.remark = L"The answer says nothing that a run looks at.";
  }
  return row;
}

// FailureRow says what a run makes of an exchange that failed.
Row FailureRow(const ServerRequest& request) {
  Row row{L"A run", L"", L""};
  if (request.question == ServerQuestion::CheckSBX) {
    row.value = L"would go on with the limits that it knows";
  } else if (request.question == ServerQuestion::PostReport && request.kind == ReportKind::Protection) {
    row.value = L"would try again at its next start";
  } else {
    row.value = L"would store a failure of the server";
    row.remark = L"It holds up the runs of all printers for some days (page History).";
  }
  return row;
}

}  // namespace

std::wstring WhyNoDelivery(const FormReply& reply) {
  if (reply.delivery == FormDelivery::Answered) return {};
  const auto* known = std::ranges::find_if(kErrors, [&](const ErrorText& text) { return text.error == reply.error; });
  if (known != std::end(kErrors)) return std::wstring(known->text);
  if (reply.error != 0) return L"system error " + std::to_wstring(reply.error);
  return reply.delivery == FormDelivery::NotConnected ? L"no request can be made of the URL"
                                                      : L"the reason is not known";
}

std::vector<Row> AskServer(const ServerRequest& request, const PostForm& post, const ExchangeGate& gate) {
  Exchange exchange;
  ZOLTReportToServer server(
      [&](const std::string& url, std::string_view body) {
        exchange = {url, std::string(body), !IsOpen(gate), {}};
        if (!exchange.cancelled) exchange.reply = post(url, body);
        return exchange.reply;
      },
      [](std::uint32_t) {});  // nothing is tried again, so nothing waits
  if (!request.baseURL.empty()) server.SetBaseURL(request.baseURL);
  server.SetTestMode(true);

  ServerAnswer answer;
  const bool succeeded = Ask(server, request, answer);
  const bool slash = request.baseURL.empty() || request.baseURL.ends_with('/');
  std::vector<Row> rows = {
      {L"URL", Shown(exchange.url),
       slash ? L"" : L"The base URL does not end in a slash. The page's name is appended as it is."},
      {L"Request body", Shown(exchange.body),
       request.question == ServerQuestion::PostReport ? L"Marked as a test by its end, test=1." : L""},
      DeliveryRow(exchange),
  };
  if (exchange.cancelled) return rows;
  const FormReply& reply = exchange.reply;
  if (reply.delivery == FormDelivery::Answered) {
    rows.push_back(StatusRow(reply.status));
    rows.push_back({L"Raw answer", Shown(reply.answer),
                    reply.answer.empty() ? L"Empty. The body of an answer is kept with status 200 only." : L""});
    rows.push_back(UnderstoodRow(request.question == ServerQuestion::PostReport, succeeded, answer.Values().empty()));
    for (const auto& [key, value] : answer.Values()) rows.push_back(ValueRow(key, value));
  }
  if (!succeeded) rows.push_back(FailureRow(request));
  return rows;
}

}  // namespace zt
