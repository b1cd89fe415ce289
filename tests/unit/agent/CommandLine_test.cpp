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
  const auto runs = [](const Arguments& arguments) {
    const auto [productProtection, printVolume] = SelectRuns(CommandLine::Parse(arguments));
    return std::pair(productProtection, printVolume);
  };
  EXPECT_EQ(runs({}), std::pair(false, true));
  EXPECT_EQ(runs({L"-SBXPlus"}), std::pair(true, true));
  EXPECT_EQ(runs({L"-SBXOnly", L"-SBXPlus"}), std::pair(true, false));
}

}  // namespace
}  // namespace zt
