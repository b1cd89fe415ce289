#pragma once

#include <string>
#include <string_view>

#include "ModulePath.h"

namespace zt {

// ElevationPolicyIdentifier forms the identifier, in braces, under which the program with this base name is registered
// with the browser's elevation policy. `baseName` is UTF-8. Bytes are written in storage order, on purpose: the first
// three groups are not reversed as in the usual text form of a GUID.
std::string ElevationPolicyIdentifier(std::string_view baseName);

// RegisterElevationPolicy lets the browser's protected mode start the program without a prompt. Failures are ignored.
void RegisterElevationPolicy(const ModulePath& program);

}  // namespace zt
