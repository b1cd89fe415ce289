#include "PrinterSNMPClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
constexpr const char* kColumn = "1.3.6.1.4.1.53017.9.1.2";
constexpr const char* kLastColumn = "1.3.6.1.4.1.53017.9.1.20";

class PrinterSNMPClientTest : public testing::Test {
 protected:
  PrinterSNMPClientTest() { client.Initialize("127.0.0.1"); }

  SNMPPeer peer;
  PrinterSNMPClient client;
  Numbers numbers = {1};
  Texts texts = {"old"};
  std::string text = "old";
  TraceCapture trace;
};

TEST_F(PrinterSNMPClientTest, GetText) {
  peer.Set(kThird, 7);
  for (const char* name : {kThird, kSecond, "no name"}) EXPECT_FALSE(client.GetText(name, text)) << name;
  EXPECT_EQ(text, "old");
  for (const std::string& value : {std::string("a\0b", 3), std::string()}) {
    peer.Set(kFirst, value);
    EXPECT_TRUE(client.GetText(kFirst, text));
    EXPECT_EQ(text, value.c_str());  // up to its first NUL
    EXPECT_TRUE(client.GetBytes(kFirst, text));
    EXPECT_EQ(text, value);
  }
}

TEST_F(PrinterSNMPClientTest, GetInteger) {
  const struct {
    std::uint8_t tag;
    std::string content;
    std::optional<std::int64_t> number;
  } rows[] = {
      {0x02, "\xFF", -1},
      {0x02, "\x07", 7},
      {0x41, std::string("\x00\xC0\x00\x00\x00", 5), 0xC0000000},  // a Counter above 2147483647
      {0x42, "\x05", 5},
      {0x43, "\x06", 6},
      {0x04, "7", std::nullopt},
  };
  for (const auto& row : rows) {
    std::int64_t number = 99;
    peer.SetRaw(kFirst, row.tag, row.content);
    EXPECT_EQ(client.GetInteger(kFirst, number), row.number.has_value());
    EXPECT_EQ(number, row.number.value_or(99));
  }
}

TEST_F(PrinterSNMPClientTest, CommunityOfThePort) {
  peer.Set(kFirst, "x");
  peer.community = "secret";
  EXPECT_TRUE(client.SetReadCommunity("secret"));
  EXPECT_FALSE(client.SetReadCommunity(""));
  EXPECT_FALSE(client.SetReadCommunity(std::string(26, 'c')));
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
  const std::pair<std::uint8_t, std::string> unreadable[] = {
      {0x46, "\1"}, {0x04, std::string(1025, 'x')}, {0x04, std::string(3000, 'x')}};  // the last in no answer
  for (const auto& [tag, content] : unreadable) {
    peer.SetRaw(kSecond, tag, content);
    EXPECT_THAT(get(), ElementsAre(Optional(std::string("a")), std::nullopt, Optional(std::string("c"))));
    EXPECT_EQ(peer.requests.size(), 4u);
  }
}

TEST_F(PrinterSNMPClientTest, WalksInRowOrder) {
  EXPECT_TRUE(client.WalkTexts(kColumn, texts));  // no rows, and nothing behind it
  EXPECT_THAT(texts, IsEmpty());
  peer.SetColumn(kLastColumn, Texts{"a", "", "c"});
  EXPECT_TRUE(client.WalkTexts(kColumn, texts));  // ….20 is not under ….2
  EXPECT_THAT(texts, IsEmpty());
  EXPECT_TRUE(client.WalkTexts(kLastColumn, texts));
  EXPECT_THAT(texts, ElementsAre("a", "", "c"));
  peer.SetColumn(kLastColumn, Texts{"a", std::string("b\0c", 3), "d"});
  EXPECT_TRUE(client.WalkTexts(kLastColumn, texts));
  EXPECT_THAT(texts, ElementsAre("a", "b", "d"));
  EXPECT_TRUE(client.WalkBytes(kLastColumn, texts));
  EXPECT_THAT(texts, ElementsAre("a", std::string("b\0c", 3), "d"));
  EXPECT_TRUE(client.WalkAndJoin(kLastColumn, text));
  EXPECT_EQ(text, "ab");  // one text

  EXPECT_FALSE(client.WalkIntegers(kLastColumn, numbers));
  EXPECT_THAT(numbers, ElementsAre(1));
  peer.SetColumn(kColumn, Numbers{5, -6, 3000000000});
  EXPECT_TRUE(client.WalkIntegers(kColumn, numbers));
  EXPECT_THAT(numbers, ElementsAre(5, -6, 3000000000));
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(PrinterSNMPClientTest, NamesMustIncrease) {
  peer.SetColumn(kColumn, Numbers{1, 2, 3});
  const std::string first = std::string(kColumn) + ".1.1";
  for (const std::string& next : {first, std::string(kColumn) + ".1.0"}) {
    peer.nextName = [&](const std::string& asked) { return asked == kColumn ? first : next; };
    peer.requests.clear();
    EXPECT_FALSE(client.WalkIntegers(kColumn, numbers));
    EXPECT_EQ(peer.requests.size(), 2u);
    EXPECT_EQ(trace.Texts(), Texts{"3 name does not increase in walk of " + std::string(kColumn) + " : " + next});
    trace.lines.clear();
  }
  EXPECT_THAT(numbers, ElementsAre(1));
}

TEST_F(PrinterSNMPClientTest, WalkIsBounded) {
  Numbers rows(4096, 1);
  peer.SetColumn(kColumn, rows);
  EXPECT_TRUE(client.WalkIntegers(kColumn, numbers));
  EXPECT_EQ(numbers, rows);
  rows.push_back(1);
  peer.SetColumn(kColumn, rows);
  EXPECT_FALSE(client.WalkIntegers(kColumn, numbers));
  EXPECT_EQ(trace.Texts(), Texts{"3 too many rows in walk of " + std::string(kColumn)});
}

TEST_F(PrinterSNMPClientTest, WalkTakesAMinuteAtMost) {
  using std::chrono_literals::operator""s;
  std::chrono::steady_clock::time_point time;
  PrinterSNMPClient slow([&time] { return time += 20s; });
  slow.Initialize("127.0.0.1");
  peer.SetColumn(kColumn, Numbers{1, 2, 3});
  EXPECT_TRUE(slow.WalkIntegers(kColumn, numbers));
  peer.SetColumn(kColumn, Numbers{1, 2, 3, 4});
  EXPECT_FALSE(slow.WalkIntegers(kColumn, numbers));
  EXPECT_EQ(trace.Texts(), Texts{"3 too slow a walk of " + std::string(kColumn) + ", given up after rows: 3"});
}

// The one test that waits for the real time-out, twice.
TEST_F(PrinterSNMPClientTest, SilenceIsAFailure) {
  peer.SetColumn(kColumn, Numbers{1, 2});
  peer.silent = {std::string(kColumn) + ".1.1", kFirst};
  EXPECT_FALSE(client.WalkIntegers(kColumn, numbers));
  EXPECT_EQ(peer.requests.size(), 2u);
  const char* const names[] = {kFirst, kSecond};
  EXPECT_EQ(client.GetSeveral(names), std::nullopt);
  EXPECT_EQ(peer.requests.size(), 3u);  // nobody is asked again
}

}  // namespace
}  // namespace zt
