#pragma once

#include <optional>
#include <string>

namespace zt {

// ReadHostVersion returns the version of the installed driver package: the value "MainVersion" of the section "Version"
// in the file "pp.ver" beside the program or, where there is no such file, in the one named like the program with the
// extension ".ver". Nothing without a file or a value. `programPath` is the full path of the program file.
std::optional<std::string> ReadHostVersion(const std::wstring& programPath);

}  // namespace zt
