#include "Logger.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "DebugOutputCapture_win.h"
#include "RegistryKey.h"
#include "TempFolder.h"

namespace zt {
namespace {

class LoggerTest : public testing::Test {
 protected:
  static constexpr wchar_t component[] = L"TEST";

  void Configure(std::uint32_t level, const std::wstring& file) {
    RegistryKey key = RegistryKey::OpenOrCreate(L"SOFTWARE\\Tressil\\Logger\\TEST", KEY_READ | KEY_SET_VALUE);
    key.WriteDword(L"Level", level);
    key.WriteString(L"File", file);
  }

  static void WriteLines(Logger& logger, int count) {
    for (int line = 1; line <= count; ++line) logger.Write(Severity::Information, "tests/Some.cpp", line, "text");
  }

  // One line of a process of its own.
  static void WriteOne() {
    Logger logger;
    logger.Start(component);
    WriteLines(logger, 1);
  }

  std::ptrdiff_t LinesIn(const wchar_t* name) const {
    const std::string text = folder.Read(name);
    return std::count(text.begin(), text.end(), '\n');
  }

  TempFolder folder;
  std::wstring log = folder.Path(L"zt.log");
};

TEST_F(LoggerTest, StaysOffWithoutAUsableConfiguration) {
  Configure(0, log);
  Logger logger;
  logger.Start(L"ABSENT");
  logger.Start(component);
  EXPECT_EQ(traceLevel, 0u);

  RegistryKey key = RegistryKey::Open(L"SOFTWARE\\Tressil\\Logger\\TEST", KEY_SET_VALUE);
  key.WriteString(L"Level", L"4");
  logger.Start(component);
  EXPECT_EQ(traceLevel, 0u);

  Configure(4, std::wstring(260, L'x'));
  logger.Start(component);
  EXPECT_EQ(traceLevel, 0u);

  WriteLines(logger, 11);
  EXPECT_FALSE(folder.Exists(L"zt.log"));

  // A file that cannot be opened loses the lines.
  Configure(4, folder.Path(L"absent\\zt.log"));
  logger.Start(component);
  WriteLines(logger, 12);
  EXPECT_FALSE(folder.Exists(L"absent"));
}

TEST_F(LoggerTest, EleventhLineWritesTheBatchAndTheEndTheRest) {
  Configure(4, log);
  {
    Logger logger;
    const DebugOutputCapture debug;
    logger.Start(component);
    EXPECT_EQ(debug.lines, std::vector{ToNarrow(log)});
    EXPECT_EQ(traceLevel, 4u);
    WriteLines(logger, 10);
    EXPECT_FALSE(folder.Exists(L"zt.log"));
    WriteLines(logger, 1);
    EXPECT_EQ(LinesIn(L"zt.log"), 11);
    WriteLines(logger, 2);
  }
  EXPECT_EQ(LinesIn(L"zt.log"), 13);
  EXPECT_EQ(traceLevel, 0u);

  const std::string text = folder.Read(L"zt.log");
  const std::string first = text.substr(0, text.find("\r\n"));
  EXPECT_EQ(std::count(first.begin(), first.end(), '\t'), 5);
  EXPECT_TRUE(first.ends_with("\tSome,1\t4\ttext")) << first;
}

TEST_F(LoggerTest, AReadOnlyFileGetsItsLine) {
  Configure(4, log);
  folder.Write(L"zt.log", "");
  ASSERT_TRUE(SetFileAttributesW(log.c_str(), FILE_ATTRIBUTE_READONLY));
  WriteOne();
  EXPECT_EQ(LinesIn(L"zt.log"), 1);
}

TEST_F(LoggerTest, RotatesAboveOneMebibyteAndKeepsSixCopies) {
  Configure(4, log);
  folder.Write(L"zt.log", std::string(1048576, 'x'));
  WriteOne();
  EXPECT_FALSE(folder.Exists(L"zt.log.0")) << "a file of exactly 1 MiB is not rotated";

  for (const wchar_t* copy : {L"zt.log.0", L"zt.log.1", L"zt.log.2", L"zt.log.3", L"zt.log.4", L"zt.log.5"}) {
    folder.Write(copy, std::string(1, static_cast<char>(copy[7])));
  }
  WriteOne();
  EXPECT_EQ(LinesIn(L"zt.log"), 1);
  EXPECT_GT(folder.Read(L"zt.log.0").size(), 1048576u);
  EXPECT_EQ(folder.Read(L"zt.log.1"), "0");
  EXPECT_EQ(folder.Read(L"zt.log.5"), "4") << "the oldest copy is gone";
  EXPECT_FALSE(folder.Exists(L"zt.log.6"));
}

TEST_F(LoggerTest, AnotherProcessRotating) {
  Configure(4, log);
  folder.Write(L"zt.log", std::string(1048577, 'x'));
  {
    const KernelHandle inUse(CreateMutexW(nullptr, FALSE, L"_LOG___INUSE_"));
    WriteOne();
  }
  // The name is taken and no mutex of that name can be opened, as with one of another user.
  const KernelHandle inUse(CreateEventW(nullptr, TRUE, FALSE, L"_LOG___INUSE_"));
  WriteOne();
  EXPECT_FALSE(folder.Exists(L"zt.log.0"));
  EXPECT_EQ(LinesIn(L"zt.log"), 2);
}

TEST(ScopedLogger, MarksTheScope) {
  const DebugOutputCapture debug;
  {
    const ScopedLogger scope("Name");
    WriteKvfDebug("inside");
  }
  EXPECT_EQ(debug.lines, (std::vector<std::string>{"Name >> enter\n", "[KVF] inside", "Name << leave\n"}));
}

}  // namespace
}  // namespace zt
