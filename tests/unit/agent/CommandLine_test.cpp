#include "CommandLine.h"

#include <gtest/gtest.h>

#include <vector>

namespace zt {
namespace {

using Arguments = std::vector<std::wstring_view>;

TEST(CommandLine, QueueName) {
  const struct {
    Arguments arguments;
    std::optional<std::wstring> queue;
  } rows[] = {
      {{L"-QName", L"Office"}, L"Office"},        {{L"/QNAME", L"Office"}, L"Office"},
      {{L"-QName", L"-Install"}, L"-Install"},  // the next argument is consumed, whatever it is
      {{L"-QName", L"A", L"-QName", L"B"}, L"B"}, {{L"-QName", L"A", L"-QName"}, L"A"},
      {{L"--QName", L"Office"}, std::nullopt},    {{L"-QNam", L"Office"}, std::nullopt},
      {{L"QName", L"Office"}, std::nullopt},      {{L"-", L"/", L"", L"-QName", L"Office"}, L"Office"},
  };
  for (const auto& row : rows) EXPECT_EQ(CommandLine::Parse(row.arguments).Value(L"QName"), row.queue);
}

TEST(CommandLine, SomeSwitchesTakeTheNextArgument) {
  for (const wchar_t* flag : {L"-UnInstall", L"-Install", L"-ShowTest", L"-Enable", L"-Disable", L"-ShowAgreement"}) {
    const CommandLine commandLine = CommandLine::Parse(Arguments{flag, L"-SBXPlus"});
    EXPECT_EQ(commandLine.Value(flag + 1), L"");
    EXPECT_TRUE(commandLine.Has(L"SBXPlus"));
  }
  for (const wchar_t* valued : {L"-Driver", L"-ChangeMode", L"-Lang"}) {
    EXPECT_FALSE(CommandLine::Parse(Arguments{valued, L"-SBXPlus"}).Has(L"SBXPlus"));
  }
}

TEST(CommandLine, RunSelection) {
  const struct {
    Arguments arguments;
    bool productProtection;
    bool printVolume;
  } rows[] = {
      {{}, false, true},
      {{L"-SBXPlus"}, true, true},
      {{L"-SBXOnly", L"-SBXPlus"}, true, false},
  };
  for (const auto& row : rows) {
    const RunSelection selection = SelectRuns(CommandLine::Parse(row.arguments));
    EXPECT_EQ(selection.productProtection, row.productProtection);
    EXPECT_EQ(selection.printVolume, row.printVolume);
  }
}

}  // namespace
}  // namespace zt
