#include "Diagnosis.h"

#include <gtest/gtest.h>

#include "TraceLines.h"

namespace zt {
namespace {

TEST(Diagnosis, OneLineForEachRowAndNoCommunity) {
  TraceLines lines;
  for (const Severity severity : {Severity::Error, Severity::Information, Severity::Warning, Severity::Error}) {
    lines.Add({severity, L"s3c " + std::to_wstring(static_cast<int>(severity))});
  }
  EXPECT_EQ(MakeDiagnosis({{L"Printer", {{L"SNMP", L"s3cs3c", L"s3c"}, {L"Date", L"", L"not told"}}, L"a\n\r\nb"},
                           {L"Trace", {}, lines.Text(Severity::Warning, 2)}},
                          L"s3c"),
            L"== Printer ==\r\nSNMP: ********** (*****)\r\nDate: not told\r\na\r\n\r\nb\r\n"
            L"\r\n== Trace ==\r\n***** 3\r\n***** 2\r\n");
}

}  // namespace
}  // namespace zt
