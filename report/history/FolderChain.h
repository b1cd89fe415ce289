#pragma once

#include <string>

namespace zt {

// CreateFolderChain creates the folder and those on the way to it. Folders that exist or may not be created are passed
// over; a part whose parent cannot be found ends the work with a line of debugger output.
void CreateFolderChain(const std::wstring& folder);

}  // namespace zt
