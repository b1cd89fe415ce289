#include "Logger.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "CodePage.h"
#include "RegistryKey.h"
#include "TempFolder.h"

namespace zt {
namespace {

// What was written to the debugger output since the handler was added.
std::string said;

// The system delivers that as exceptions; of a wide text, which nobody takes, a narrow one in the end.
LONG CALLBACK TakeDebugOutput(EXCEPTION_POINTERS* exception) {
  constexpr DWORD printNarrow = 0x40010006;  // DBG_PRINTEXCEPTION_C
  if (exception->ExceptionRecord->ExceptionCode != printNarrow) return EXCEPTION_CONTINUE_SEARCH;
  said += reinterpret_cast<const char*>(exception->ExceptionRecord->ExceptionInformation[1]);
  return EXCEPTION_CONTINUE_EXECUTION;
}

class LoggerTest : public testing::Test {
 protected:
  void Configure(std::uint32_t level, const std::wstring& file) {
    RegistryKey key = RegistryKey::OpenOrCreate(L"SOFTWARE\\Tressil\\Logger\\TEST", KEY_SET_VALUE);
    EXPECT_TRUE(key.WriteDword(L"Level", level));
    EXPECT_TRUE(key.WriteString(L"File", file));
  }

  // Lines of a process of its own.
  static void WriteLines(int count, const wchar_t* component = L"TEST") {
    Logger logger;
    logger.Start(component);
    for (int line = 1; line <= count; ++line) logger.Write(Severity::Information, "tests/Some.cpp", line, "text");
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
  WriteLines(11);
  Configure(4, std::wstring(260, L'x'));
  WriteLines(11);
  Configure(4, folder.Path(L"absent\\zt.log"));  // cannot be opened: the lines are lost
  WriteLines(11);
  Configure(4, log);
  WriteLines(11, L"ABSENT");
  EXPECT_FALSE(folder.Exists(L"zt.log") || folder.Exists(L"absent"));
}

TEST_F(LoggerTest, EleventhLineWritesTheBatchAndTheEndTheRest) {
  Configure(4, log);
  {
    Logger logger;
    void* handler = AddVectoredExceptionHandler(1, &TakeDebugOutput);
    logger.Start(L"TEST");
    RemoveVectoredExceptionHandler(handler);
    EXPECT_EQ(said, ToNarrow(log));
    EXPECT_EQ(traceLevel, 4u);
    for (int line = 1; line <= 12; ++line) {
      logger.Write(Severity::Information, "tests/Some.cpp", line, "text");
      EXPECT_EQ(LinesIn(L"zt.log"), line < 11 ? 0 : 11);
    }
  }
  EXPECT_EQ(LinesIn(L"zt.log"), 12);
  EXPECT_EQ(traceLevel, 0u);
  const std::string text = folder.Read(L"zt.log");
  EXPECT_EQ(std::count(text.begin(), text.end(), '\t'), 12 * 5);
  EXPECT_TRUE(text.ends_with("\tSome,12\t4\ttext\r\n")) << text;
}

TEST_F(LoggerTest, RotatesAboveOneMebibyteAndKeepsSixCopies) {
  Configure(4, log);
  folder.Write(L"zt.log", std::string(1048576, 'x'));
  ASSERT_TRUE(SetFileAttributesW(log.c_str(), FILE_ATTRIBUTE_READONLY));
  WriteLines(1);
  for (const bool opens : {true, false}) {
    // Where the name is an event's no mutex of that name can be opened, as with one of another user.
    const wchar_t name[] = L"_LOG___INUSE_";
    const KernelHandle inUse(opens ? CreateMutexW(nullptr, FALSE, name) : CreateEventW(nullptr, TRUE, FALSE, name));
    WriteLines(1);
  }
  EXPECT_EQ(LinesIn(L"zt.log"), 3) << "neither one of exactly 1 MiB is rotated, nor while another process does it";

  for (const wchar_t* copy : {L"0", L"1", L"2", L"3", L"4", L"5"}) {
    folder.Write(std::wstring(L"zt.log.") + copy, ToNarrow(copy));
  }
  WriteLines(1);
  EXPECT_EQ(LinesIn(L"zt.log"), 1);
  EXPECT_EQ(LinesIn(L"zt.log.0"), 3);
  EXPECT_EQ(folder.Read(L"zt.log.1"), "0");
  EXPECT_EQ(folder.Read(L"zt.log.5"), "4") << "the oldest copy is gone";
  EXPECT_FALSE(folder.Exists(L"zt.log.6"));
}

}  // namespace
}  // namespace zt
