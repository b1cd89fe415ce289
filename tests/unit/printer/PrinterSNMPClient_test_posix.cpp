#include "PrinterSNMPClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HexBytes.h"
#include "PrinterSNMPClient.h"
#include "SNMPPeer.h"
#include "TraceCapture.h"

namespace zt {
namespace {

using testing::ElementsAre;

using Numbers = std::vector<std::int64_t>;
using Texts = std::vector<std::string>;

constexpr const char* kFirst = "1.3.6.1.4.1.53017.1.0";
constexpr const char* kSecond = "1.3.6.1.4.1.53017.2.0";
constexpr const char* kThird = "1.3.6.1.4.1.53017.3.0";
const std::string kColumn = "1.3.6.1.4.1.53017.9.1.2";

class PrinterSNMPClientTest : public testing::Test {
 protected:
  PrinterSNMPClientTest() { client.Initialize("127.0.0.1"); }

  SNMPPeer peer;
  std::chrono::seconds pace{0};  // by which the clock goes on at each look
  PrinterSNMPClient client{[this, time = std::chrono::steady_clock::time_point()]() mutable { return time += pace; }};
  Numbers numbers = {1};
  TraceCapture trace;
};

TEST_F(PrinterSNMPClientTest, GetSeveralAsksAgainForTheRest) {
  const char* const names[] = {kFirst, kSecond, kThird};
  const auto get = [&] {
    peer.requests.clear();
    Texts texts;
    const auto answer = client.GetSeveral(names);
    for (const auto& text : answer.value()) texts.push_back(text.value_or("-"));
    return texts;
  };
  peer.Set(kSecond, "b");
  peer.Set(kThird, 3);
  EXPECT_THAT(get(), ElementsAre("-", "b", "-"));
  EXPECT_THAT(peer.requests, ElementsAre(std::string("get ") + kFirst + " " + kSecond + " " + kThird,
                                         std::string("get ") + kSecond + " " + kThird));
  peer.Clear();
  EXPECT_THAT(get(), ElementsAre("-", "-", "-"));
  EXPECT_EQ(peer.requests.size(), 3u);

  // A value that cannot be read spoils the whole answer, and is lost alone.
  peer.Set(kFirst, std::string("a\0b", 3));
  peer.Set(kThird, "c");
  for (const Bytes& unreadable : {fromHex("46 01 01"), element(4, Bytes(3000))}) {
    peer.Set(kSecond, unreadable);
    EXPECT_THAT(get(), ElementsAre("a", "-", "c"));
    EXPECT_EQ(peer.requests.size(), 4u);
  }
  // An error of an object that was not asked for: the fourth of three, and none.
  for (const char* index : {"04", "00"}) {
    peer.rawAnswers = {fromHex("30 12 02 01 00 04 00 A2 0B 02 01 00 02 01 02 02 01 " + std::string(index) + "30 00")};
    EXPECT_THAT(get(), ElementsAre("a", "-", "c"));
    EXPECT_EQ(peer.requests.size(), 4u);
  }
}

TEST_F(PrinterSNMPClientTest, WalksAreBounded) {
  const std::string first = kColumn + ".1.1";
  const std::string before = kColumn + ".1.0";
  const std::tuple<std::size_t, std::string, int, std::string> rows[] = {
      // how many rows there are; how each behind the first is named, empty: as it should be; seconds that each takes;
      // what is traced, empty: all are read
      {2, first, 0, "3 name does not increase in walk of " + kColumn + " : " + first},
      {2, before, 0, "3 name does not increase in walk of " + kColumn + " : " + before},
      {3, "", 20, ""},
      {4, "", 20, "3 too slow a walk of " + kColumn + ", given up after rows: 3"},
      {4096, "", 0, ""},
      {4097, "", 0, "3 too many rows in walk of " + kColumn},
  };
  peer.SetColumn(kColumn + "0", Numbers{8});  // not under it
  for (const auto& [count, behind, seconds, traced] : rows) {
    peer.SetColumn(kColumn, Numbers(count, 7));
    peer.nextName = nullptr;
    if (!behind.empty())
      peer.nextName = [&, behind = behind](const auto& asked) { return asked == kColumn ? first : behind; };
    pace = std::chrono::seconds(seconds);
    numbers = {1};
    EXPECT_EQ(client.WalkIntegers(kColumn.c_str(), numbers), traced.empty());
    EXPECT_EQ(numbers, traced.empty() ? Numbers(count, 7) : Numbers{1});
    EXPECT_EQ(trace.Texts(), traced.empty() ? Texts() : Texts{traced});
    trace.lines.clear();
  }
}

// The one test that waits for the real time-out: 3 seconds, twice.
TEST_F(PrinterSNMPClientTest, SilenceIsAFailure) {
  pace = std::chrono::seconds(3);
  peer.silent = {kColumn, kFirst};
  const auto begun = std::chrono::steady_clock::now();
  EXPECT_FALSE(client.WalkIntegers(kColumn.c_str(), numbers));
  const char* const names[] = {kFirst, kSecond};
  EXPECT_EQ(client.GetSeveral(names), std::nullopt);
  EXPECT_EQ(peer.requests.size(), 2u);  // nobody is asked again
  EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(9));
}

}  // namespace
}  // namespace zt
