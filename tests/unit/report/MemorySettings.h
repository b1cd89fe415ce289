#pragma once

#include <string>

namespace zt {

// settingsFile stands in for the settings file: Load reads it, Save and the end of a changed store write over its
// beginning.
extern std::string settingsFile;

}  // namespace zt
