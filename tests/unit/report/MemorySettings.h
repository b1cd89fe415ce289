#pragma once

#include <string>

namespace zt {

// settingsFile is what natively stands in for the settings file: Load reads it, Save writes it.
extern std::string settingsFile;

}  // namespace zt
