#include "HttpConnection.h"

#include <gtest/gtest.h>

#include "TraceCapture.h"
// after winsock2.h
#include <ws2tcpip.h>

#include <thread>

namespace zt {
namespace {

using Lines = std::vector<std::string>;

// What a server may do is tried end to end; here stands what cannot be brought about there.
class HttpConnectionTest : public testing::Test {
 protected:
  std::string response = "left over";
  std::uint32_t status = 1;
  TraceCapture trace;
};

TEST_F(HttpConnectionTest, ABodyThatDoesNotFitIntoALengthOf32BitsIsNotSent) {
  const char body[] = "12345";
  HttpConnection connection;
  ASSERT_TRUE(connection.Open("POST", "http://127.0.0.1:9/"));
  EXPECT_FALSE(connection.Send({body, 0x1'0000'0005}, response, status));  // refused before a byte is looked at
  EXPECT_EQ(connection.LastError(), static_cast<std::uint32_t>(ERROR_FILE_TOO_LARGE));
  EXPECT_EQ(response, "");
  EXPECT_EQ(status, 0u);
  EXPECT_EQ(trace.Texts(), Lines{"3 HTTP request is too long : 4294967301"});
}

TEST_F(HttpConnectionTest, AResponseThatTakesTooLongIsDropped) {
  WSADATA data;
  WSAStartup(MAKEWORD(2, 2), &data);
  const SOCKET listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  int size = sizeof address;
  ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), size), 0);
  ASSERT_EQ(listen(listener, 1), 0);
  getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
  std::thread server([listener] {
    const SOCKET connection = accept(listener, nullptr, nullptr);
    char request[4096];
    recv(connection, request, sizeof request, 0);
    const std::string_view reply = "HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nbody";
    send(connection, reply.data(), static_cast<int>(reply.size()), 0);
    closesocket(connection);
  });
  HttpConnection connection(0);  // no time for the body
  EXPECT_TRUE(connection.Open("GET", "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/"));
  EXPECT_TRUE(connection.Send({}, response, status));
  EXPECT_EQ(status, 200u);
  EXPECT_EQ(response, "");
  EXPECT_EQ(trace.Texts(), Lines{"3 HTTP response takes longer than 0 ms: dropped"});
  server.join();
  closesocket(listener);
  WSACleanup();
}

}  // namespace
}  // namespace zt
