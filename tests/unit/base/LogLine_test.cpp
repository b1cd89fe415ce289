#include "LogLine.h"

#include <gtest/gtest.h>

#include "Trace.h"

namespace zt {
namespace {

TEST(LogLine, PrefixHasDateTicksAndThread) {
  const LogMoment moment{3, 14, 9, 5, 5234007};
  EXPECT_EQ(LogPrefix(moment, 7), "03-14 09:05\t5234.007\t0007");
  EXPECT_EQ(LogPrefix(moment, 123456), "03-14 09:05\t5234.007\t123456");
  // Without thread ID the malformed tick field is kept.
  EXPECT_EQ(LogPrefix(moment, std::nullopt), "03-14 09:05\t5234.037");
  // A machine that has been up for more than 49 days.
  EXPECT_EQ(LogPrefix({12, 31, 23, 59, 5000000000999}, 1), "12-31 23:59\t5000000000.999\t0001");
}

TEST(LogLine, BodyNamesTheModule) {
  const struct {
    const char* source;
    const char* body;
  } rows[] = {
      {"agent/TOVAgent.cpp", "TOVAgent,217\t4\tx"},
      {"C:\\src\\agent\\TOVAgent.cpp", "TOVAgent,217\t4\tx"},
      {"agent/TOVAgent_win.cpp", "TOVAgent,217\t4\tx"},
      {"plain", "plain,217\t4\tx"},
      {"a.b/c", "c,217\t4\tx"},
      {"", ",217\t4\tx"},
  };
  for (const auto& row : rows) EXPECT_EQ(LogBody(Severity::Information, row.source, 217, "x"), row.body);
  // A message cannot start a line of its own.
  EXPECT_EQ(LogBody(Severity::Error, "a.cpp", 1, "serial\r\n03-14 09:05\t1.000\t0001\tb,1\t2\tforged\n"),
            "a,1\t2\tserial  03-14 09:05\t1.000\t0001\tb,1\t2\tforged ");
}

TEST(TraceLevel, UnwantedTextIsNotEvenBuilt) {
  traceLevel = 3;
  int built = 0;
  ZT_TRACE(Information, ++built);
  EXPECT_EQ(built, 0);
  ZT_TRACE(Warning, ++built);
  EXPECT_EQ(built, 1);
  traceLevel = 0;
}

}  // namespace
}  // namespace zt
