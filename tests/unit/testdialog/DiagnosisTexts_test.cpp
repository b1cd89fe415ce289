#include <gtest/gtest.h>

#include "Diagnosis.h"
#include "PrinterChoice.h"
#include "TraceLines.h"

namespace zt {
namespace {

TEST(Diagnosis, OneLineForEachRowAndNoCommunity) {
  const std::vector<DiagnosisSection> sections = {
      {L"Printer", {{L"Port", L"IP_1", L""}, {L"SNMP", L"s3c", L"as s3c"}, {L"Date", L"", L"not told"}}, L""},
      {L"Trace", {}, L"a s3cs3c\nb\r\n\rc"}};
  EXPECT_EQ(MakeDiagnosis(sections, L"s3c"),
            L"== Printer ==\r\nPort: IP_1\r\nSNMP: ***** (as *****)\r\nDate: not told\r\n"
            L"\r\n== Trace ==\r\na **********\r\nb\r\n\r\nc\r\n");
  EXPECT_NE(MakeDiagnosis({{L"A", {{L"SNMP", L"public", L""}}, L""}}, L"public").find(L"public"), std::wstring::npos);
}

TEST(TraceLines, TheLastOfTheGraver) {
  TraceLines lines;
  for (std::size_t i = 0; i < TraceLines::kMost + 2; ++i) {
    lines.Add({i % 2 == 0 ? Severity::Error : Severity::Information, std::to_wstring(i)});
  }
  EXPECT_EQ(lines.Text(Severity::Warning, 2), L"4998\r\n5000\r\n");
  EXPECT_EQ(lines.Text(Severity::Information, 2), L"5000\r\n5001\r\n");
  EXPECT_EQ(lines.Text(Severity::Information).substr(0, 3), L"2\r\n");  // the two before are gone
}

TEST(PrinterChoice, WhyAPortLeadsNowhere) {
  struct Row {
    const wchar_t* port;
    bool wsd;
    const wchar_t* words;
  };
  for (const Row& row : {Row{L"WSD-1", true, L"WSD: the device"}, Row{L"usb001", false, L"no USB printer"},
                         Row{L"PORTPROMPT:", false, L"to a file"}, Row{L"\\\\PC\\Q", false, L"another computer"},
                         Row{L"IP_1", false, L"no address"}, Row{L"", false, L"no port"}}) {
    EXPECT_NE(WhyNoTarget(row.port, row.wsd).find(row.words), std::wstring::npos) << row.port;
  }
}

}  // namespace
}  // namespace zt
