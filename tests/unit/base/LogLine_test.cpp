#include "LogLine.h"

#include <gtest/gtest.h>

#include "TraceCapture.h"

namespace zt {
namespace {

TEST(LogLine, PrefixHasDateTicksAndThread) {
  const LogMoment moment{3, 14, 9, 5, 5234007};
  EXPECT_EQ(LogPrefix(moment, 7), "03-14 09:05\t5234.007\t0007");
  // Without thread ID the malformed tick field is kept.
  EXPECT_EQ(LogPrefix(moment, std::nullopt), "03-14 09:05\t5234.037");
  // A machine that has been up for more than 49 days.
  EXPECT_EQ(LogPrefix({12, 31, 23, 59, 5000000000999}, 123456), "12-31 23:59\t5000000000.999\t123456");
}

TEST(LogLine, BodyNamesTheModule) {
  for (const char* source : {"agent/TOVAgent.cpp", "C:\\src\\a.b\\TOVAgent", "TOVAgent_win.cpp"}) {
    EXPECT_EQ(LogBody(Severity::Information, source, 217, "x"), "TOVAgent,217\t4\tx") << source;
  }
  // A message cannot start a line of its own.
  EXPECT_EQ(LogBody(Severity::Error, "a.cpp", 1, "serial\r\n03-14 09:05\tforged\n"),
            "a,1\t2\tserial  03-14 09:05\tforged ");
}

TEST(Trace, UnwantedTextIsNotEvenBuilt) {
  const TraceCapture trace;
  traceLevel = 3;
  int built = 0;
  ZT_TRACE(Information, ++built);
  EXPECT_EQ(built, 0);
  ZT_TRACE(Warning, ++built);
  EXPECT_EQ(trace.Texts(), std::vector<std::string>{"3 1"});
}

TEST(Trace, ScopedLoggerMarksTheScope) {
  const TraceCapture trace;
  { const ScopedLogger scope("Name"); }
  EXPECT_EQ(trace.debug, (std::vector<std::string>{"Name >> enter\n", "Name << leave\n"}));
}

}  // namespace
}  // namespace zt
