#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zt {

// CommandLine is the switches that the process was started with. A switch begins with "-" or "/" and is named without
// regard to case, in full. Anything else is ignored.
class CommandLine {
 public:
  // Parse reads the arguments after the program's own path. A switch that takes a value always consumes the next
  // argument, even one that looks like a switch; as the last argument it is not stored. Of a repeated switch the last
  // value counts.
  static CommandLine Parse(std::span<const std::wstring_view> arguments);

  // Has and Value are asked with the switch's name as it is documented, "QName". A switch without value has an empty
  // one.
  bool Has(std::wstring_view name) const { return values_.contains(name); }
  std::optional<std::wstring> Value(std::wstring_view name) const;

 private:
  std::map<std::wstring, std::wstring, std::less<>> values_;
};

// RunSelection tells which of the two runs a command line asks for.
struct RunSelection {
  bool productProtection;
  bool printVolume;
};
RunSelection SelectRuns(const CommandLine& commandLine);

}  // namespace zt
