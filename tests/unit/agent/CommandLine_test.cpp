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
      {{L"-QName", L"Office"}, L"Office"},
      {{L"/QNAME", L"Office"}, L"Office"},
      {{L"-QName", L"-Install"}, L"-Install"},  // the next argument is consumed, whatever it is
      {{L"-QName", L"A", L"-QName", L"B"}, L"B"},
      {{L"-QName", L"A", L"-QName"}, L"A"},
      {{L"-Driver", L"-QName", L"Office"}, std::nullopt},
      {{L"-ChangeMode", L"-QName", L"Office"}, std::nullopt},
      {{L"-Lang", L"-QName", L"Office"}, std::nullopt},
      {{L"-Enable", L"-QName", L"Office"}, L"Office"},
      {{L"-Disable", L"-QName", L"Office"}, L"Office"},
      {{L"-ShowAgreement", L"-QName", L"Office"}, L"Office"},
      {{L"--QName", L"Office"}, std::nullopt},
      {{L"-QNam", L"Office"}, std::nullopt},
      {{L"QName", L"Office"}, std::nullopt},
      {{L"-QName"}, std::nullopt},
      {{L"-", L"/", L"", L"-QName", L"Office"}, L"Office"},
      {{}, std::nullopt},
  };
  for (const auto& row : rows) EXPECT_EQ(CommandLine::Parse(row.arguments).Value(L"QName"), row.queue);
}

TEST(CommandLine, SwitchesWithoutValue) {
  const CommandLine commandLine = CommandLine::Parse(Arguments{L"/uninstall", L"-INSTALL", L"-showtest"});
  for (const wchar_t* name : {L"UnInstall", L"Install", L"ShowTest"}) EXPECT_EQ(commandLine.Value(name), L"");
  EXPECT_FALSE(commandLine.Has(L"SBXOnly"));
}

TEST(CommandLine, RunSelection) {
  const struct {
    Arguments arguments;
    bool productProtection;
    bool printVolume;
  } rows[] = {
      {{}, false, true},
      {{L"-SBXPlus"}, true, true},
      {{L"-SBXOnly"}, true, false},
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
