#include "CommandLine.h"

#include <algorithm>
#include <iterator>

#include "Text.h"

namespace zt {
namespace {

struct Switch {
  std::wstring_view name;
  bool takesValue;
};

// Driver, ChangeMode, Enable, Disable and ShowAgreement have no effect. They are recognised, on purpose, so that the
// values of the first two are not taken for switches of their own.
constexpr Switch kSwitches[] = {
    {L"QName", true},          {L"UnInstall", false}, {L"Install", false}, {L"Driver", true},
    {L"ShowTest", false},      {L"ChangeMode", true}, {L"Enable", false},  {L"Disable", false},
    {L"ShowAgreement", false}, {L"Lang", true},       {L"SBXOnly", false}, {L"SBXPlus", false},
};

const Switch* FindSwitch(std::wstring_view argument) {
  if (argument.empty() || (argument.front() != L'-' && argument.front() != L'/')) return nullptr;
  argument.remove_prefix(1);
  const auto* found = std::find_if(std::begin(kSwitches), std::end(kSwitches),
                                   [&](const Switch& known) { return EqualsIgnoringCase(argument, known.name); });
  return found == std::end(kSwitches) ? nullptr : found;
}

}  // namespace

CommandLine CommandLine::Parse(std::span<const std::wstring_view> arguments) {
  CommandLine commandLine;
  for (std::size_t at = 0; at < arguments.size(); ++at) {
    const Switch* known = FindSwitch(arguments[at]);
    if (!known) continue;
    std::wstring value;
    if (known->takesValue) {
      if (++at == arguments.size()) break;
      value = arguments[at];
    }
    commandLine.values_.insert_or_assign(std::wstring(known->name), std::move(value));
  }
  return commandLine;
}

std::optional<std::wstring> CommandLine::Value(std::wstring_view name) const {
  const auto found = values_.find(name);
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

RunSelection SelectRuns(const CommandLine& commandLine) {
  const bool only = commandLine.Has(L"SBXOnly");
  return {.productProtection = only || commandLine.Has(L"SBXPlus"), .printVolume = !only};
}

}  // namespace zt
