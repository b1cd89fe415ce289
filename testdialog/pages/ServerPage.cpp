#include "ServerPage.h"

#include <algorithm>
#include <utility>

#include "Joined.h"
#include "Words.h"
#include "ZOLTReportToServer.h"

namespace zt {
namespace {

constexpr Ascii kDelivery = "Delivery";
constexpr Ascii kSent = "sent";
constexpr Ascii kStatus = "HTTP status";
constexpr Ascii kAnswered = "200";
constexpr Ascii kUnderstood = "Understood";
constexpr Ascii kYes = "yes";

struct ErrorText {
  std::uint32_t error;
  Ascii text;
};
// WinINet's numbers.
constexpr ErrorText kErrors[] = {
    {12002, "nothing came back in time"},
    {12005, "the URL is not valid"},
    {12006, "the URL begins with neither http nor https"},
    {12007, "the server's name is not known: it is wrong, or this computer reaches no name server"},
    {12029, "nobody listens there: the server is off, the port is wrong, or a firewall is between"},
    {12030, "the server ended the connection"},
    {12031, "the server reset the connection"},
    {12152, "what listens there is no web server: its answer is not HTTP"},
    {12157, "no secure connection: server and this computer share no encryption"},
    {12175, "no secure connection: the server's certificate is not accepted"},
};

struct StatusText {
  std::uint32_t status;
  Ascii text;
};
constexpr StatusText kStatuses[] = {
    {200, "The server answers."},
    {401, "The server wants a login."},
    {403, "The server refuses."},
    {404, "The server has no such page: the base URL is wrong."},
    {407, "The proxy wants a login."},
    {500, "The server failed."},
    {502, "A proxy does not reach the server."},
    {503, "The server is overloaded, or down for maintenance."},
    {504, "A proxy gets no answer of the server in time."},
};

struct ValueText {
  std::string_view key;
  Ascii label;
  Ascii remark;
};
constexpr ValueText kValues[] = {
    {"NoMoreService", "Service", "The server has ended this service. A run switches itself off."},
    {"LastDate", "Last report", "The server has a report of this printer of that day."},
    {"PostIntervalDays", "Days between reports", ""},
    {"TransmissionDuration", "Days between protection reports", ""},
    {"NSLanguageCode", "Countries", "Nobody is asked to agree there."},
    {"TonerMaxLife", "Toner life limit", "Of this model, or else of all."},
    {"PPNormalIntervalDays", "Days between normal reports", "No run sends those."},
};

// What these rows say of an exchange that did not fail.
constexpr std::pair<Ascii, Ascii> kGood[] = {{kDelivery, kSent}, {kStatus, kAnswered}, {kUnderstood, kYes}};

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

void AddDelivery(std::vector<Row>& rows, const Exchange& exchange) {
  if (exchange.cancelled) {
    AddRow(rows, kDelivery, "cancelled", "Nothing was sent.");
  } else if (exchange.reply.delivery == FormDelivery::Answered) {
    AddRow(rows, kDelivery, kSent);
  } else {
    const bool connected = exchange.reply.delivery != FormDelivery::NotConnected;
    AddRow(rows, kDelivery, connected ? Ascii("failed") : Ascii("not sent")).remark = WhyNoDelivery(exchange.reply);
  }
}

void AddStatus(std::vector<Row>& rows, std::uint32_t status) {
  if (status == 0) {
    AddRow(rows, kStatus, "none", "What answered is no web server.");
    return;
  }
  const auto* known =
      std::ranges::find_if(kStatuses, [status](const StatusText& text) { return text.status == status; });
  AddRow(rows, kStatus, status,
         known == std::end(kStatuses) ? Ascii("The server does not take the request.") : known->text);
}

void AddValue(std::vector<Row>& rows, const std::string& key, const std::string& value) {
  const auto* known = std::ranges::find_if(kValues, [&](const ValueText& text) { return text.key == key; });
  if (known == std::end(kValues)) {
    AddRow(rows, "", value).label = Shown(key);
  } else {
    AddRow(rows, known->label, key == "NoMoreService" ? Piece("ended") : Piece(value), known->remark);
  }
}

Ascii MeaningOf(bool post, bool succeeded, bool empty) {
  if (post && succeeded) return "The server has taken the report, as a test.";
  if (post) return "The server has not taken the report: its result is neither SUCCESS nor NOMORESERVICE.";
  if (!succeeded) return "The answer is no XML document with the element root.";
  return empty ? Ascii("The answer says nothing that a run looks at.") : Ascii("");
}

// What a run makes of an exchange that failed.
void AddFailure(std::vector<Row>& rows, const ServerRequest& request) {
  constexpr Ascii kRun = "A run";
  if (request.question == ServerQuestion::CheckSBX) {
    AddRow(rows, kRun, "would go on with the limits that it knows");
  } else if (request.question == ServerQuestion::PostReport && request.kind == ReportKind::Protection) {
    AddRow(rows, kRun, "would try again at its next start");
  } else {
    AddRow(rows, kRun, "would store a failure of the server",
           "It holds up the runs of all printers for some days (page History).");
  }
}

}  // namespace

std::wstring WhyNoDelivery(const FormReply& reply) {
  if (reply.delivery == FormDelivery::Answered) return {};
  const auto* known = std::ranges::find_if(kErrors, [&](const ErrorText& text) { return text.error == reply.error; });
  if (known != std::end(kErrors)) return Joined({known->text});
  if (reply.error != 0) return Joined({"system error ", reply.error});
  return Joined({reply.delivery == FormDelivery::NotConnected ? Ascii("no request can be made of the URL")
                                                              : Ascii("the reason is not known")});
}

std::vector<Row> AskServer(const ServerRequest& request, const PostForm& post, const ExchangeGate& gate) {
  Exchange exchange;
  ZOLTReportToServer server(
      [&](const std::string& url, std::string_view body) {
        exchange.url = url;
        exchange.body = body;
        exchange.cancelled = !IsOpen(gate);
        if (!exchange.cancelled) exchange.reply = post(url, body);
        return exchange.reply;
      },
      [](std::uint32_t) {});  // nothing is tried again, so nothing waits
  if (!request.baseURL.empty()) server.SetBaseURL(request.baseURL);
  server.SetTestMode(true);

  ServerAnswer answer;
  const bool succeeded = Ask(server, request, answer);
  const bool posts = request.question == ServerQuestion::PostReport;
  const bool slash = request.baseURL.empty() || request.baseURL.ends_with('/');
  std::vector<Row> rows;
  AddRow(rows, "URL", exchange.url,
         slash ? Ascii("") : Ascii("The base URL does not end in a slash. The page's name is appended as it is."));
  AddRow(rows, "Request body", exchange.body, posts ? Ascii("Marked as a test by its end, test=1.") : Ascii(""));
  AddDelivery(rows, exchange);
  if (exchange.cancelled) return rows;
  const FormReply& reply = exchange.reply;
  if (reply.delivery == FormDelivery::Answered) {
    AddStatus(rows, reply.status);
    AddRow(rows, "Raw answer", reply.answer,
           reply.answer.empty() ? Ascii("Empty. The body of an answer is kept with status 200 only.") : Ascii(""));
    AddRow(rows, kUnderstood, succeeded ? kYes : Ascii("no"), MeaningOf(posts, succeeded, answer.Values().empty()));
    for (const auto& [key, value] : answer.Values()) AddValue(rows, key, value);
  }
  if (!succeeded) AddFailure(rows, request);
  return rows;
}

std::size_t LineOfFailure(const std::vector<Row>& rows) {
  const auto failed = std::ranges::find_if(rows, [](const Row& row) {
    return std::ranges::any_of(kGood, [&row](const auto& good) {
      return row.label == Joined({good.first}) && row.value != Joined({good.second});
    });
  });
  return failed == rows.end() ? 0 : static_cast<std::size_t>(failed - rows.begin());
}

}  // namespace zt
