// A command line of any arguments: what stands between two NULs is one.

#include <algorithm>
#include <vector>

#include "CommandLine.h"
#include "Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::wstring text;
  // Bytes above ASCII stand for characters that a byte does not hold.
  std::transform(data, data + size, std::back_inserter(text),
                 [](std::uint8_t byte) { return static_cast<wchar_t>(byte < 0x80 ? byte : byte * 0x101); });
  std::vector<std::wstring_view> arguments;
  for (std::wstring_view rest = text; !rest.empty();) {
    arguments.push_back(rest.substr(0, rest.find(L'\0')));
    rest.remove_prefix(std::min(arguments.back().size() + 1, rest.size()));
  }

  const zt::CommandLine commandLine = zt::CommandLine::Parse(arguments);
  for (const wchar_t* name : {L"QName", L"Lang", L"Driver", L"ChangeMode"}) {
    if (const auto value = commandLine.Value(name)) {
      require(std::ranges::find(arguments, *value) != arguments.end(), "a value is an argument");
    }
  }
  for (const wchar_t* name : {L"Install", L"UnInstall", L"SBXOnly", L"SBXPlus"}) {
    require(commandLine.Value(name).value_or(L"").empty(), "other switches have no value");
  }
  const zt::RunSelection runs = zt::SelectRuns(commandLine);
  require(runs.productProtection || runs.printVolume, "there is always a run");
  return 0;
}
