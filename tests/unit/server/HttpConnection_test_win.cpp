#include "HttpConnection.h"

#include <winsock2.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DocumentSize.h"
// after winsock2.h
#include <wininet.h>
#include <ws2tcpip.h>

#include <thread>

#include "PostForm.h"

namespace zt {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// LoopbackServer takes one HTTP request after the other on a free port of 127.0.0.1, sends the bytes of the reply as
// they are and closes; an empty reply drops the connection.
class LoopbackServer {
 public:
  explicit LoopbackServer(std::string reply) : reply_(std::move(reply)) {
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
    listener_ = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    address_.sin_family = AF_INET;
    address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bind(listener_, reinterpret_cast<const sockaddr*>(&address_), sizeof address_);
    listen(listener_, 8);
    int size = sizeof address_;
    getsockname(listener_, reinterpret_cast<sockaddr*>(&address_), &size);
    thread_ = std::thread([this] {
      while (ServeOne()) {
      }
    });
  }
  ~LoopbackServer() { Stop(); }

  std::string Url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(ntohs(address_.sin_port)) + path;
  }

  // Stop answers the requests that came, header and body.
  std::vector<std::string> Stop() {
    if (thread_.joinable()) {
      // A connection that sends nothing ends the loop: closing a listener does not wake accept() everywhere.
      const SOCKET last = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
      connect(last, reinterpret_cast<const sockaddr*>(&address_), sizeof address_);
      closesocket(last);
      thread_.join();
      closesocket(listener_);
      WSACleanup();
    }
    return std::move(requests_);
  }

 private:
  bool ServeOne() {
    const SOCKET connection = accept(listener_, nullptr, nullptr);
    const std::string request = ReadRequest(connection);
    if (!request.empty()) {
      requests_.push_back(request);
      send(connection, reply_.data(), static_cast<int>(reply_.size()), 0);
    }
    shutdown(connection, SD_SEND);
    closesocket(connection);
    return !request.empty();
  }

  // Reads up to the end that Content-Length tells.
  static std::string ReadRequest(SOCKET connection) {
    std::string request;
    std::size_t expected = std::string::npos;
    char buffer[4096];
    while (request.size() < expected) {
      const int count = recv(connection, buffer, sizeof buffer, 0);
      if (count <= 0) break;
      request.append(buffer, static_cast<std::size_t>(count));
      const std::size_t headerEnd = request.find("\r\n\r\n");
      if (headerEnd == std::string::npos) continue;
      const std::size_t length = request.find("Content-Length: ");
      expected = headerEnd + 4 + (length < headerEnd ? std::strtoul(request.c_str() + length + 16, nullptr, 10) : 0);
    }
    return request;
  }

  std::string reply_;
  SOCKET listener_;
  sockaddr_in address_{};
  std::vector<std::string> requests_;
  std::thread thread_;
};

std::string Reply(const std::string& status, const std::string& body) {
  return "HTTP/1.1 " + status + "\r\nConnection: close\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
         body;
}

struct Exchange {
  bool sent = false;
  std::string response = "left over";
  std::uint32_t status = 1;
  std::uint32_t lastError = 1;
};

Exchange Get(const std::string& url, HttpConnection connection = HttpConnection()) {
  Exchange exchange;
  EXPECT_TRUE(connection.Open("GET", url));
  exchange.sent = connection.Send({}, exchange.response, exchange.status);
  exchange.lastError = connection.LastError();
  return exchange;
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

  for (const char* url : {"", "no URL", "http://"}) {
    EXPECT_EQ(PostFormOverHttp(url, "x").delivery, FormDelivery::NotConnected) << url;
  }
  EXPECT_EQ(PostFormOverHttp("http://unknown.invalid/", "x").delivery, FormDelivery::NotSent);

  // A length that does not fit into 32 bits is refused before a byte is looked at, not cut to 5.
  LoopbackServer unasked(Reply("200 OK", "<root/>"));
  EXPECT_EQ(PostFormOverHttp(unasked.Url("/"), {body.data(), 0x1'0000'0005}).delivery, FormDelivery::NotSent);
  EXPECT_THAT(unasked.Stop(), testing::IsEmpty());
}

TEST(HttpConnection, ReadsTheBodyOf200Only) {
  const std::string large(kLongestDocument, 'y');
  const struct {
    const char* name;
    std::string reply;
    std::uint32_t status;
    std::string response;
  } rows[] = {
      {"length told", Reply("200 OK", "body"), 200, "body"},
      {"empty", Reply("200 OK", ""), 200, ""},
      {"the longest", Reply("200 OK", large), 200, large},
      {"longer than is kept", Reply("200 OK", large + "z"), 200, ""},
      {"HTTP 1.0, up to the end of the connection", "HTTP/1.0 200 OK\r\n\r\nbody", 200, "body"},
      {"chunks", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nbo\r\n2\r\ndy\r\n0\r\n\r\n", 200, "body"},
      {"any byte", Reply("200 OK", std::string("a\0\xff", 3)), 200, std::string("a\0\xff", 3)},
      {"shorter than told", "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nbody", 200, "body"},
      {"server error", Reply("500 Oh", "body"), 500, ""},
      {"no content", "HTTP/1.1 204 No Content\r\n\r\n", 204, ""},
      {"partial content is no 200", Reply("206 Part", "body"), 206, ""},
  };
  for (const auto& row : rows) {
    LoopbackServer server(row.reply);
    const Exchange exchange = Get(server.Url("/rds/rds.xml?a=1"));
    EXPECT_TRUE(exchange.sent) << row.name;
    EXPECT_EQ(exchange.status, row.status) << row.name;
    EXPECT_EQ(exchange.lastError, 0u) << row.name;
    EXPECT_TRUE(exchange.response == row.response) << row.name << ": " << exchange.response.substr(0, 100);
    EXPECT_THAT(server.Stop(), testing::ElementsAre(StartsWith("GET /rds/rds.xml?a=1 HTTP/1.1\r\n")));
  }
  LoopbackServer server(Reply("200 OK", "body"));
  const Exchange late = Get(server.Url("/"), HttpConnection(0));  // no time for the body
  EXPECT_EQ(late.status, 200u);
  EXPECT_EQ(late.response, "");
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

TEST(HttpConnection, AnswersThatAreNoHttp) {
  for (const char* reply : {"", "\r\n", "nonsense\r\n\r\n", "HTTP/1.1 \r\n\r\n", "HTTP/1.1 99999999999 ?\r\n\r\nbody",
                            "HTTP/1.1 200 OK\r\nContent-Length: -5\r\n\r\nbody",
                            "HTTP/1.1 200 OK\r\nContent-Length: 99999999999999999999\r\n\r\nbody",
                            "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nFFFFFFFF\r\nbody"}) {
    LoopbackServer server(reply);
    const Exchange exchange = Get(server.Url("/"));
    // Windows calls a dropped connection a failed send, Wine a sent one.
    EXPECT_EQ(exchange.sent, exchange.lastError == 0) << reply;
    EXPECT_LE(exchange.response.size(), 100u) << reply;
  }
}

TEST(HttpConnection, UsesTheFirst104CharactersOfAUrl) {
  for (const std::size_t length : {103u, 104u, 105u, 3000u}) {
    LoopbackServer server(Reply("200 OK", ""));
    const std::string base = server.Url("/");
    std::string url = base;
    while (url.size() < length) url += static_cast<char>('a' + url.size() % 26);
    EXPECT_TRUE(Get(url).sent);
    const std::string path = url.substr(0, 104).substr(base.size() - 1);
    EXPECT_THAT(server.Stop(), testing::ElementsAre(StartsWith("GET " + path + " HTTP/1.1\r\n")));
  }
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
