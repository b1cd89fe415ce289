#include "FolderChain.h"

#include <windows.h>

#include "Trace.h"

namespace zt {

void CreateFolderChain(const std::wstring& folder) {
  for (std::size_t end = folder.find(L'\\'); end != std::wstring::npos; end = folder.find(L'\\', end + 1)) {
    if (CreateDirectoryW(folder.substr(0, end).c_str(), nullptr)) continue;
    const DWORD error = GetLastError();
    if (error != ERROR_PATH_NOT_FOUND) continue;
    WriteDebug("LE : " + std::to_string(error));
    return;
  }
  CreateDirectoryW(folder.c_str(), nullptr);
}

}  // namespace zt
