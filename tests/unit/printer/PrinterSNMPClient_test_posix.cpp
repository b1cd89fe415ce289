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

TEST_F(PrinterSNMPClientTest, GetsNumbersOfEachType) {
  const std::pair<const char*, std::int64_t> rows[] = {{"02 01 FF", -1},
                                                       {"41 05 00 C0 00 00 00", 0xC0000000},
                                                       {"42 01 05", 5},
                                                       {"43 01 06", 6},
                                                       {"04 01 35", 99}};  // a text: none
  for (const auto& [element, expected] : rows) {
    peer.Set(kFirst, fromHex(element));
    std::int64_t number = 99;
    EXPECT_EQ(client.GetInteger(kFirst, number), number != 99);
    EXPECT_EQ(number, expected);
  }
}

TEST_F(PrinterSNMPClientTest, GetSeveralAsksAgainForTheRest) {
  const char* const names[] = {kFirst, kSecond, kThird};
  const auto get = [&] {
    peer.requests.clear();
    Texts texts;
    for (const auto& text : client.GetSeveral(names).value()) texts.push_back(text.value_or("-"));
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

TEST_F(PrinterSNMPClientTest, WalksInRowOrder) {
  const std::string behind = kColumn + "0";  // not under it
  Texts texts = {"old"};
  std::string joined;
  peer.SetColumn(behind, Texts{"a", std::string("b\0c", 3), "", "d"});
  EXPECT_TRUE(client.WalkTexts(kColumn.c_str(), texts));
  EXPECT_EQ(texts, Texts());
  EXPECT_TRUE(client.WalkTexts(behind.c_str(), texts));
  EXPECT_THAT(texts, ElementsAre("a", "b", "", "d"));
  EXPECT_TRUE(client.WalkAndJoin(behind.c_str(), joined));
  EXPECT_EQ(joined, "ab");  // one text
  EXPECT_FALSE(client.WalkIntegers(behind.c_str(), numbers));
  EXPECT_EQ(numbers, Numbers{1});
}

TEST_F(PrinterSNMPClientTest, WalksAreBounded) {
  const std::string first = kColumn + ".1.1";
  const std::string before = kColumn + ".1.0";
  const struct {
    std::size_t rows;
    std::string next;  // the name of each row behind the first; empty: as it should be
    int pace;
    std::string trace;  // empty: all rows are read
  } rows[] = {
      {2, first, 0, "3 name does not increase in walk of " + kColumn + " : " + first},
      {2, before, 0, "3 name does not increase in walk of " + kColumn + " : " + before},
      {3, "", 20, ""},
      {4, "", 20, "3 too slow a walk of " + kColumn + ", given up after rows: 3"},
      {4096, "", 0, ""},
      {4097, "", 0, "3 too many rows in walk of " + kColumn},
  };
  for (const auto& row : rows) {
    peer.SetColumn(kColumn, Numbers(row.rows, 7));
    peer.nextName = nullptr;
    if (!row.next.empty()) peer.nextName = [&](const auto& asked) { return asked == kColumn ? first : row.next; };
    pace = std::chrono::seconds(row.pace);
    EXPECT_EQ(client.WalkIntegers(kColumn.c_str(), numbers), row.trace.empty());
    if (row.trace.empty()) EXPECT_EQ(numbers, Numbers(row.rows, 7));
    EXPECT_EQ(trace.Texts(), row.trace.empty() ? Texts() : Texts{row.trace});
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
