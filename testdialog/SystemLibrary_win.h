#pragma once

#include "Handle.h"

namespace zt {

// LoadSystemLibrary loads a library of Windows' own, which no run needs, from the system's folder.
LibraryHandle LoadSystemLibrary(const wchar_t* name);

// FindFunction returns a function of a library as the type that its header gives it; null without one.
template <class Function>
Function* FindFunction(HMODULE library, const char* name) {
  // By way of void (*)(): the compiler knows that type as one that fits any function.
  return library ? reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(GetProcAddress(library, name))) : nullptr;
}

}  // namespace zt
