#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
#include <wininet.h>

#include "HttpConnection.h"
#include "LoopbackServer.h"
#include "PostForm.h"

namespace zt {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string Reply(const std::string& status, const std::string& body) {
  return "HTTP/1.1 " + status + "\r\nConnection: close\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
         body;
}

TEST(PostFormOverHttp, SendsTheFormAndItsHeaders) {
  LoopbackServer server(Reply("200 OK", "<root/>"));
  const std::string body = "data=" + std::string(100000, 'x');
  const FormReply reply = PostFormOverHttp(server.Url("/web/Connector.aspx"), body);
  EXPECT_EQ(reply.delivery, FormDelivery::Answered);
  EXPECT_EQ(reply.answer, "<root/>");

  const std::vector<std::string> requests = server.Stop();
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_THAT(requests[0], StartsWith("POST /web/Connector.aspx HTTP/1.1\r\n"));
  EXPECT_THAT(requests[0], EndsWith("\r\n\r\n" + body));
  for (const char* header : {"Content-Type: application/x-www-form-urlencoded", "User-Agent: ZOLTConnector",
                             "Referer: */*", "Host: 127.0.0.1:", "Content-Length: 100005\r\n"}) {
    EXPECT_THAT(requests[0], HasSubstr(std::string("\r\n") + header));
  }
  EXPECT_THAT(requests[0], Not(HasSubstr("\r\nAccept:")));
}

TEST(PostFormOverHttp, TellsWhatCouldNotBeDelivered) {
  EXPECT_EQ(PostFormOverHttp("", "x").delivery, FormDelivery::NotConnected);
  EXPECT_EQ(PostFormOverHttp("no URL", "x").delivery, FormDelivery::NotConnected);
  EXPECT_EQ(PostFormOverHttp("http://", "x").delivery, FormDelivery::NotConnected);
  EXPECT_EQ(PostFormOverHttp("http://unknown.invalid/", "x").delivery, FormDelivery::NotSent);
}

struct Exchange {
  bool sent = false;
  std::string response = "left over";
  std::uint32_t status = 1;
  std::uint32_t lastError = 1;
};

Exchange Get(const std::string& url) {
  Exchange exchange;
  HttpConnection connection;
  EXPECT_TRUE(connection.Open("GET", url));
  exchange.sent = connection.Send({}, exchange.response, exchange.status);
  exchange.lastError = connection.LastError();
  return exchange;
}

TEST(HttpConnection, ReadsTheBodyOf200Only) {
  const std::string large(HttpConnection::maximumResponse, 'y');
  const struct {
    const char* name;
    std::string reply;
    std::uint32_t status;
    std::string response;
  } rows[] = {
      {"length told", Reply("200 OK", "body"), 200, "body"},
      {"empty", Reply("200 OK", ""), 200, ""},
      {"the longest", Reply("200 OK", large), 200, large},
      {"up to the end of the connection", "HTTP/1.1 200 OK\r\n\r\nbody", 200, "body"},
      {"HTTP 1.0", "HTTP/1.0 200 OK\r\n\r\nbody", 200, "body"},
      {"chunks", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nbo\r\n2\r\ndy\r\n0\r\n\r\n", 200, "body"},
      {"any byte", Reply("200 OK", std::string("a\0\xff", 3)), 200, std::string("a\0\xff", 3)},
      {"shorter than told", "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nbody", 200, "body"},
      {"longer than is kept", Reply("200 OK", std::string(HttpConnection::maximumResponse + 1, 'z')), 200, ""},
      {"server error", Reply("500 Oh", "body"), 500, ""},
      {"not found", Reply("404 No", "body"), 404, ""},
      {"no content", "HTTP/1.1 204 No Content\r\n\r\n", 204, ""},
      {"partial content is no 200", Reply("206 Part", "body"), 206, ""},
  };
  for (const auto& row : rows) {
    LoopbackServer server(row.reply);
    const Exchange exchange = Get(server.Url("/rds/rds.xml"));
    EXPECT_TRUE(exchange.sent) << row.name;
    EXPECT_EQ(exchange.status, row.status) << row.name;
    EXPECT_EQ(exchange.lastError, 0u) << row.name;
    EXPECT_TRUE(exchange.response == row.response) << row.name << ": " << exchange.response.substr(0, 100);
  }
}

TEST(HttpConnection, ABodyThatTakesTooLongIsDropped) {
  LoopbackServer server(Reply("200 OK", "body"));
  HttpConnection connection(0);
  ASSERT_TRUE(connection.Open("GET", server.Url("/")));
  std::string response = "left over";
  std::uint32_t status = 0;
  EXPECT_TRUE(connection.Send({}, response, status));
  EXPECT_EQ(status, 200u);
  EXPECT_EQ(response, "");
}

TEST(HttpConnection, BodylessRequestHasNone) {
  LoopbackServer server(Reply("200 OK", ""));
  EXPECT_TRUE(Get(server.Url("/rds/rds.xml?a=1")).sent);
  EXPECT_THAT(server.Stop(), ElementsAre(StartsWith("GET /rds/rds.xml?a=1 HTTP/1.1\r\n")));
}

TEST(HttpConnection, FailedSendTellsTheSystemError) {
  LoopbackServer gone("");
  gone.Stop();
  for (const std::string& url : {gone.Url("/"), std::string("http://unknown.invalid/")}) {
    const Exchange exchange = Get(url);
    EXPECT_FALSE(exchange.sent) << url;
    EXPECT_EQ(exchange.status, 0u) << url;
    EXPECT_EQ(exchange.response, "") << url;
    EXPECT_GE(exchange.lastError, INTERNET_ERROR_BASE) << url;
  }
}

TEST(HttpConnection, DroppedConnectionGivesNeitherStatusNorResponse) {
  LoopbackServer server("");
  const Exchange exchange = Get(server.Url("/"));
  // Windows calls this a failed send, Wine a sent one.
  EXPECT_EQ(exchange.sent, exchange.lastError == 0);
  EXPECT_EQ(exchange.status, 0u);
  EXPECT_EQ(exchange.response, "");
}

TEST(HttpConnection, AnswersThatAreNoHttp) {
  for (const char* reply : {"\r\n", "nonsense\r\n\r\n", "HTTP/1.1 \r\n\r\n", "HTTP/1.1 99999999999 ?\r\n\r\nbody",
                            "HTTP/1.1 200 OK\r\nContent-Length: -5\r\n\r\nbody",
                            "HTTP/1.1 200 OK\r\nContent-Length: 99999999999999999999\r\n\r\nbody",
                            "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nFFFFFFFF\r\nbody"}) {
    LoopbackServer server(reply);
    EXPECT_LE(Get(server.Url("/")).response.size(), 100u) << reply;
  }
}

TEST(HttpConnection, UsesTheFirst104CharactersOfAUrl) {
  LoopbackServer server(Reply("200 OK", ""));
  const std::string base = server.Url("/");
  std::vector<std::string> expected;
  for (const std::size_t length : {103u, 104u, 105u, 3000u}) {
    std::string url = base;
    while (url.size() < length) url += static_cast<char>('a' + url.size() % 26);
    EXPECT_TRUE(Get(url).sent);
    expected.push_back("GET " + url.substr(0, 104).substr(base.size() - 1) + " HTTP/1.1");
  }
  std::vector<std::string> firstLines;
  for (const std::string& request : server.Stop()) firstLines.push_back(request.substr(0, request.find('\r')));
  EXPECT_EQ(firstLines, expected);
}

TEST(HttpConnection, AUrlWithAControlCharacterIsRefused) {
  for (const char* line : {"\r\n", "\n", "\r", "\t", " HTTP/1.1\r\n"}) {
    for (const char* url : {"http://127.0.0.1:9/", "http://127.0.0.1", "http://user"}) {
      EXPECT_FALSE(HttpConnection().Open("GET", std::string(url) + line + "X-Forged: 1@127.0.0.1:9/")) << url << line;
    }
  }
}

}  // namespace
}  // namespace zt
