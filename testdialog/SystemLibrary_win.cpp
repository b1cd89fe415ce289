#include "SystemLibrary_win.h"

#include <windows.h>

namespace zt {

LibraryHandle LoadSystemLibrary(const wchar_t* name) {
  return LibraryHandle(LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32));
}

}  // namespace zt
