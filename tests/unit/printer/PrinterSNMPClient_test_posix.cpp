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
using testing::IsEmpty;
using testing::Optional;

using Numbers = std::vector<std::int64_t>;
using Texts = std::vector<std::string>;

constexpr const char* kFirst = "1.3.6.1.4.1.53017.1.0";
constexpr const char* kSecond = "1.3.6.1.4.1.53017.2.0";
constexpr const char* kThird = "1.3.6.1.4.1.53017.3.0";
const std::string kColumn = "1.3.6.1.4.1.53017.9.1.2";
const std::string kLastColumn = kColumn + "0";

class PrinterSNMPClientTest : public testing::Test {
 protected:
  PrinterSNMPClientTest() { client.Initialize("127.0.0.1"); }

  SNMPPeer peer;
  std::chrono::seconds pace{0};  // by which the clock goes on at each look
  PrinterSNMPClient client{[this, time = std::chrono::steady_clock::time_point()]() mutable { return time += pace; }};
  Numbers numbers = {1};
  Texts texts = {"old"};
  std::string text = "old";
  TraceCapture trace;
};

TEST_F(PrinterSNMPClientTest, GetsAnObjectOfTheTypeThatIsWanted) {
  const struct {
    const char* element;
    std::optional<std::int64_t> number;
    std::optional<std::string> bytes;
  } rows[] = {
      {"02 01 FF", -1, {}},
      {"41 05 00 C0 00 00 00", 0xC0000000, {}},  // a Counter above 2147483647
      {"42 01 05", 5, {}},
      {"43 01 06", 6, {}},
      {"04 03 61 00 62", {}, std::string("a\0b", 3)},
      {"04 00", {}, ""},
  };
  for (const auto& row : rows) {
    peer.Set(kFirst, fromHex(row.element));
    std::int64_t number = 99;
    EXPECT_EQ(client.GetInteger(kFirst, number), row.number.has_value());
    EXPECT_EQ(number, row.number.value_or(99));
    text = "old";
    EXPECT_EQ(client.GetBytes(kFirst, text), row.bytes.has_value());
    EXPECT_EQ(text, row.bytes.value_or("old"));
    text = "old";
    EXPECT_EQ(client.GetText(kFirst, text), row.bytes.has_value());
    EXPECT_STREQ(text.c_str(), row.bytes.value_or("old").c_str());
    EXPECT_EQ(text.find('\0'), std::string::npos);
  }
  for (const char* name : {kSecond, "no name"}) EXPECT_FALSE(client.GetText(name, text)) << name;

  peer.community = "secret";
  EXPECT_TRUE(client.SetReadCommunity("secret"));
  EXPECT_FALSE(client.SetReadCommunity("") || client.SetReadCommunity(std::string(26, 'c')));
  EXPECT_TRUE(client.GetText(kFirst, text));
}

TEST_F(PrinterSNMPClientTest, GetSeveralAsksAgainForTheRest) {
  const char* const names[] = {kFirst, kSecond, kThird};
  const auto get = [&] {
    peer.requests.clear();
    return client.GetSeveral(names).value_or(std::vector<std::optional<std::string>>());
  };
  peer.Set(kFirst, "a");
  peer.Set(kSecond, "b");
  peer.Set(kThird, 3);
  EXPECT_THAT(get(), ElementsAre(Optional(std::string("a")), Optional(std::string("b")), std::nullopt));
  EXPECT_EQ(peer.requests.size(), 1u);

  peer.Erase(kFirst);
  peer.Set(kThird, "c");
  EXPECT_THAT(get(), ElementsAre(std::nullopt, Optional(std::string("b")), Optional(std::string("c"))));
  EXPECT_THAT(peer.requests, ElementsAre(std::string("get ") + kFirst + " " + kSecond + " " + kThird,
                                         std::string("get ") + kSecond + " " + kThird));
  peer.Clear();
  EXPECT_THAT(get(), ElementsAre(std::nullopt, std::nullopt, std::nullopt));
  EXPECT_EQ(peer.requests.size(), 3u);

  // A value that cannot be read spoils the whole answer, and is lost alone.
  peer.Set(kFirst, std::string("a\0b", 3));
  peer.Set(kThird, "c");
  for (const Bytes& unreadable : {fromHex("46 01 01"), element(4, Bytes(1025)), element(4, Bytes(3000))}) {
    peer.Set(kSecond, unreadable);
    EXPECT_THAT(get(), ElementsAre(Optional(std::string("a")), std::nullopt, Optional(std::string("c"))));
    EXPECT_EQ(peer.requests.size(), 4u);
  }
  // An error of an object that was not asked for: the fourth of three, and none.
  for (const char* index : {"04", "00"}) {
    peer.rawAnswers = {fromHex("30 12 02 01 00 04 00 A2 0B 02 01 00 02 01 02 02 01 " + std::string(index) + "30 00")};
    EXPECT_THAT(get(), ElementsAre(Optional(std::string("a")), std::nullopt, Optional(std::string("c"))));
    EXPECT_EQ(peer.requests.size(), 4u);
  }
}

TEST_F(PrinterSNMPClientTest, WalksInRowOrder) {
  EXPECT_TRUE(client.WalkTexts(kColumn.c_str(), texts));  // no rows, and nothing behind it
  EXPECT_THAT(texts, IsEmpty());
  peer.SetColumn(kLastColumn, Texts{"a", std::string("b\0c", 3), "", "d"});
  EXPECT_TRUE(client.WalkTexts(kColumn.c_str(), texts));  // ….20 is not under ….2
  EXPECT_THAT(texts, IsEmpty());
  EXPECT_TRUE(client.WalkTexts(kLastColumn.c_str(), texts));
  EXPECT_THAT(texts, ElementsAre("a", "b", "", "d"));
  EXPECT_TRUE(client.WalkBytes(kLastColumn.c_str(), texts));
  EXPECT_THAT(texts, ElementsAre("a", std::string("b\0c", 3), "", "d"));
  EXPECT_TRUE(client.WalkAndJoin(kLastColumn.c_str(), text));
  EXPECT_EQ(text, "ab");  // one text

  EXPECT_FALSE(client.WalkIntegers(kLastColumn.c_str(), numbers));
  EXPECT_THAT(numbers, ElementsAre(1));
  peer.SetColumn(kColumn, Numbers{5, -6, 3000000000});
  EXPECT_TRUE(client.WalkIntegers(kColumn.c_str(), numbers));
  EXPECT_THAT(numbers, ElementsAre(5, -6, 3000000000));
  EXPECT_THAT(trace.lines, IsEmpty());
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
    if (!row.next.empty())
      peer.nextName = [&](const std::string& asked) { return asked == kColumn ? first : row.next; };
    pace = std::chrono::seconds(row.pace);
    numbers = {1};
    EXPECT_EQ(client.WalkIntegers(kColumn.c_str(), numbers), row.trace.empty());
    EXPECT_EQ(numbers, row.trace.empty() ? Numbers(row.rows, 7) : Numbers{1});
    EXPECT_EQ(trace.Texts(), row.trace.empty() ? Texts() : Texts{row.trace});
    trace.lines.clear();
    peer.nextName = nullptr;
  }
}

// The one test that waits for the real time-out: 3 seconds, twice.
TEST_F(PrinterSNMPClientTest, SilenceIsAFailure) {
  pace = std::chrono::seconds(3);
  peer.SetColumn(kColumn, Numbers{1, 2});
  peer.silent = {kColumn + ".1.1", kFirst};
  const auto begun = std::chrono::steady_clock::now();
  EXPECT_FALSE(client.WalkIntegers(kColumn.c_str(), numbers));
  EXPECT_EQ(peer.requests.size(), 2u);
  const char* const names[] = {kFirst, kSecond};
  EXPECT_EQ(client.GetSeveral(names), std::nullopt);
  EXPECT_EQ(peer.requests.size(), 3u);  // nobody is asked again
  EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(9));
}

}  // namespace
}  // namespace zt
