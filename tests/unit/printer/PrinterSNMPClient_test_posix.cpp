#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PrinterSNMPClient.h"
#include "SNMPPeer.h"
#include "TraceCapture.h"

namespace zt {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

constexpr const char* kFirst = "1.3.6.1.4.1.53017.1.0";
constexpr const char* kSecond = "1.3.6.1.4.1.53017.2.0";
constexpr const char* kThird = "1.3.6.1.4.1.53017.3.0";
constexpr const char* kColumn = "1.3.6.1.4.1.53017.9.1.2";

class PrinterSNMPClientTest : public testing::Test {
 protected:
  PrinterSNMPClientTest() { client.Initialize("127.0.0.1"); }

  SNMPPeer peer;
  PrinterSNMPClient client;
  TraceCapture trace;
};

TEST_F(PrinterSNMPClientTest, GetText) {
  peer.Set(kFirst, std::string("a\0b", 3));
  peer.Set(kSecond, "");
  peer.Set(kThird, 7);
  std::string text;
  EXPECT_TRUE(client.GetText(kFirst, text));
  EXPECT_EQ(text, std::string("a\0b", 3));
  EXPECT_TRUE(client.GetText(kSecond, text));
  EXPECT_EQ(text, "");
  text = "old";
  EXPECT_FALSE(client.GetText(kThird, text));
  EXPECT_FALSE(client.GetText("1.3.6.1.4.1.53017.4.0", text));  // there is none
  EXPECT_FALSE(client.GetText("no name", text));
  EXPECT_EQ(text, "old");
}

TEST_F(PrinterSNMPClientTest, GetInteger) {
  struct Row {
    std::uint8_t tag;
    std::string content;
    std::int32_t number;
  };
  const Row rows[] = {
      {0x02, "\xFF", -1},
      {0x02, "\x07", 7},
      {0x41, std::string("\x00\xC0\x00\x00\x00", 5), -0x40000000},  // a Counter above 2147483647
      {0x42, "\x05", 5},
      {0x43, "\x06", 6},
  };
  std::int32_t number = 0;
  for (const Row& row : rows) {
    peer.SetRaw(kFirst, row.tag, row.content);
    EXPECT_TRUE(client.GetInteger(kFirst, number));
    EXPECT_EQ(number, row.number);
  }
  peer.Set(kFirst, "7");
  EXPECT_FALSE(client.GetInteger(kFirst, number));
  EXPECT_EQ(number, 6);
}

TEST_F(PrinterSNMPClientTest, CommunityOfThePort) {
  peer.Set(kFirst, "x");
  peer.community = "secret";
  EXPECT_FALSE(client.SetReadCommunity(""));
  EXPECT_FALSE(client.SetReadCommunity(std::string(26, 'c')));
  EXPECT_TRUE(client.SetReadCommunity("secret"));
  std::string text;
  EXPECT_TRUE(client.GetText(kFirst, text));
}

TEST_F(PrinterSNMPClientTest, GetSeveralAsksAgainForTheRest) {
  const char* const names[] = {kFirst, kSecond, kThird};
  peer.Set(kFirst, "a");
  peer.Set(kSecond, "b");
  peer.Set(kThird, 3);
  EXPECT_THAT(client.GetSeveral(names),
              ElementsAre(Optional(std::string("a")), Optional(std::string("b")), std::nullopt));
  EXPECT_EQ(peer.requests.size(), 1u);

  peer.requests.clear();
  peer.Erase(kFirst);
  peer.Set(kThird, "c");
  EXPECT_THAT(client.GetSeveral(names),
              ElementsAre(std::nullopt, Optional(std::string("b")), Optional(std::string("c"))));
  EXPECT_THAT(peer.requests, ElementsAre(std::string("get ") + kFirst + " " + kSecond + " " + kThird,
                                         std::string("get ") + kSecond + " " + kThird));

  peer.requests.clear();
  peer.Erase(kSecond);
  peer.Erase(kThird);
  EXPECT_THAT(client.GetSeveral(names), ElementsAre(std::nullopt, std::nullopt, std::nullopt));
  EXPECT_EQ(peer.requests.size(), 3u);
}

TEST_F(PrinterSNMPClientTest, WalksInRowOrder) {
  peer.SetColumn<std::int32_t>(kColumn, {5, -6, 7});
  peer.Set("1.3.6.1.4.1.53017.9.1.3.1.1", "next column");
  std::vector<std::int32_t> numbers;
  EXPECT_TRUE(client.WalkIntegers(kColumn, numbers));
  EXPECT_THAT(numbers, ElementsAre(5, -6, 7));

  peer.SetColumn<std::string>("1.3.6.1.4.1.53017.9.1.20", {"a", "", "c"});  // the last objects of the printer
  std::vector<std::string> texts;
  EXPECT_TRUE(client.WalkTexts("1.3.6.1.4.1.53017.9.1.20", texts));
  EXPECT_THAT(texts, ElementsAre("a", "", "c"));
  std::string joined = "old";
  EXPECT_TRUE(client.WalkAndJoin("1.3.6.1.4.1.53017.9.1.20", joined));
  EXPECT_EQ(joined, "ac");
  EXPECT_THAT(trace.lines, IsEmpty());
}

TEST_F(PrinterSNMPClientTest, ColumnWithoutRows) {
  std::vector<std::string> texts = {"old"};
  EXPECT_TRUE(client.WalkTexts(kColumn, texts));  // nothing behind it
  EXPECT_THAT(texts, IsEmpty());
  peer.Set("1.3.6.1.4.1.53017.9.1.20.1", "x");  // ….20 is not under ….2
  EXPECT_TRUE(client.WalkTexts(kColumn, texts));
  EXPECT_THAT(texts, IsEmpty());
}

TEST_F(PrinterSNMPClientTest, WalkOfAnotherTypeFails) {
  peer.SetColumn<std::string>(kColumn, {"x"});
  std::vector<std::int32_t> numbers = {1};
  EXPECT_FALSE(client.WalkIntegers(kColumn, numbers));
  EXPECT_THAT(numbers, ElementsAre(1));
}

TEST_F(PrinterSNMPClientTest, NamesMustIncrease) {
  peer.SetColumn<std::int32_t>(kColumn, {1, 2, 3});
  const std::string names[] = {
      std::string(kColumn) + ".1.1",  // the same over and over
      std::string(kColumn) + ".1.0",
  };
  for (const std::string& name : names) {
    peer.nextName = [&](const std::string& asked) { return asked == kColumn ? names[0] : name; };
    std::vector<std::int32_t> numbers;
    EXPECT_FALSE(client.WalkIntegers(kColumn, numbers));
    EXPECT_THAT(numbers, IsEmpty());
    EXPECT_EQ(trace.Texts(),
              std::vector<std::string>{"3 name does not increase in walk of " + std::string(kColumn) + " : " + name});
    trace.lines.clear();
  }
}

TEST_F(PrinterSNMPClientTest, WalkIsBounded) {
  std::vector<std::int32_t> rows(4096, 1);
  peer.SetColumn(kColumn, rows);
  std::vector<std::int32_t> numbers;
  EXPECT_TRUE(client.WalkIntegers(kColumn, numbers));
  EXPECT_EQ(numbers, rows);

  rows.push_back(1);
  peer.SetColumn(kColumn, rows);
  EXPECT_FALSE(client.WalkIntegers(kColumn, numbers));
  EXPECT_EQ(trace.Texts(), std::vector<std::string>{"3 too many rows in walk of " + std::string(kColumn)});
}

TEST_F(PrinterSNMPClientTest, WalkTakesAMinuteAtMost) {
  using std::chrono_literals::operator""s;
  std::chrono::steady_clock::time_point time;
  PrinterSNMPClient slow([&time] { return time += 20s; });
  slow.Initialize("127.0.0.1");
  peer.SetColumn<std::int32_t>(kColumn, {1, 2, 3});
  std::vector<std::int32_t> numbers;
  EXPECT_TRUE(slow.WalkIntegers(kColumn, numbers));

  peer.SetColumn<std::int32_t>(kColumn, {1, 2, 3, 4});
  EXPECT_FALSE(slow.WalkIntegers(kColumn, numbers));
  EXPECT_THAT(numbers, ElementsAre(1, 2, 3));
  EXPECT_EQ(trace.Texts(),
            std::vector<std::string>{"3 too slow a walk of " + std::string(kColumn) + ", given up after rows: 3"});
}

// The one test that waits for the real time-out.
TEST_F(PrinterSNMPClientTest, SilenceIsAFailure) {
  peer.SetColumn<std::int32_t>(kColumn, {1, 2});
  peer.silent = {std::string(kColumn) + ".1.1"};
  std::vector<std::int32_t> numbers;
  EXPECT_FALSE(client.WalkIntegers(kColumn, numbers));
  EXPECT_EQ(peer.requests.size(), 2u);
}

}  // namespace
}  // namespace zt
