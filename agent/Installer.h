#pragma once

#include <string>

#include "ModulePath.h"

namespace zt {

// Install makes the settings file, which every user may write afterwards, and registers the program with the browser's
// elevation policy. Does nothing for a program without a name; a failure is not reported.
void Install(const ModulePath& program);

// Uninstall deletes the settings file. The entry of the elevation policy stays, on purpose. Does nothing for an empty
// name.
void Uninstall(const std::wstring& baseName);

}  // namespace zt
