#include "HttpConnection.h"

#include <windows.h>
#include <gtest/gtest.h>

#include "TraceCapture.h"

namespace zt {
namespace {

using Lines = std::vector<std::string>;

// What a server may do is tried end to end; here stands what cannot be brought about there.

TEST(HttpConnection, ABodyThatDoesNotFitIntoALengthOf32BitsIsNotSent) {
  TraceCapture trace;
  std::string response = "left over";
  std::uint32_t status = 1;
  HttpConnection connection;
  ASSERT_TRUE(connection.Open("POST", "http://127.0.0.1:9/"));
  EXPECT_FALSE(connection.Send({"12345", 0x1'0000'0005}, response, status));  // refused before a byte is looked at
  EXPECT_EQ(connection.LastError(), static_cast<std::uint32_t>(ERROR_FILE_TOO_LARGE));
  EXPECT_EQ(response, "");
  EXPECT_EQ(status, 0u);
  EXPECT_EQ(trace.Texts(), Lines{"3 HTTP request is too long : 4294967301"});
}

TEST(HttpConnection, AResponseThatTakesTooLongIsDropped) {
  TraceCapture trace;
  std::string response = "left over";
  std::uint32_t status = 1;
  HttpConnection connection(0);  // no time for the body
  ASSERT_TRUE(connection.Open("GET", "http://127.0.0.1:8080/Connector.aspx"));
  EXPECT_TRUE(connection.Send({}, response, status));
  EXPECT_EQ(status, 200u);
  EXPECT_EQ(response, "");
  EXPECT_EQ(trace.Texts(), Lines{"3 HTTP response takes longer than 0 ms: dropped"});
}

}  // namespace
}  // namespace zt
