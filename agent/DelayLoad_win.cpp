// The hooks of the delay-load helper: where libraries of the system come from that are loaded at their first call, and
// what becomes of the call when there is none.

#include <windows.h>

// Visual C++ declares the hooks constant otherwise, and mingw-w64 never.
#define DELAYIMP_INSECURE_WRITABLE_HOOKS
#include <delayimp.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "CodePage.h"
#include "Trace.h"

namespace zt {
namespace {

// By its full path, and what it needs itself from the same folder: nothing is ever taken from the folder of the program
// or the current one.
HMODULE LoadFromSystemFolder(std::string_view name) {
  std::wstring path(MAX_PATH, L'\0');
  const UINT length = GetSystemDirectoryW(path.data(), MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return nullptr;
  path.resize(length);
  path += L'\\';
  path += ToWide(name);
  return LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

// What stands in for a function that is missing. Arguments are left alone: on x64 the caller takes them away.
std::intptr_t WINAPI FailWithZero() {
  SetLastError(ERROR_PROC_NOT_FOUND);
  return 0;
}

// Also INVALID_HANDLE_VALUE, SOCKET_ERROR, a Winsock error that nobody knows, and a failed HRESULT.
std::intptr_t WINAPI FailWithMinusOne() {
  SetLastError(ERROR_PROC_NOT_FOUND);
  return -1;
}

// Most functions return 0, or nothing at all, when they fail. In these 0 would be a success or a handle.
bool FailsWithMinusOne(std::string_view library, std::string_view function) {
  if (library.starts_with("WS2_32")) return true;
  constexpr std::string_view kFunctions[] = {"CoCreateInstance", "CoInitializeEx", "SHGetFolderPathW",
                                             "SetupDiGetClassDevsW", "SetupDiOpenDeviceInterfaceRegKey"};
  return std::find(std::begin(kFunctions), std::end(kFunctions), function) != std::end(kFunctions);
}

FARPROC StandInFor(const DelayLoadInfo& info) {
  const std::string function = info.dlp.fImportByName ? info.dlp.szProcName : "#" + std::to_string(info.dlp.dwOrdinal);
  ZT_TRACE(Error, "can't load " << function << " of " << info.szDll);
  return reinterpret_cast<FARPROC>(FailsWithMinusOne(info.szDll, function) ? FailWithMinusOne : FailWithZero);
}

FARPROC WINAPI Notify(unsigned event, PDelayLoadInfo info) {
  // Without a library the helper would search on, beginning with the program's folder: this program's own handle says
  // that there is none.
  const HMODULE none = GetModuleHandleW(nullptr);
  if (event == dliNotePreLoadLibrary) {
    const HMODULE library = LoadFromSystemFolder(info->szDll);
    return reinterpret_cast<FARPROC>(library ? library : none);
  }
  return event == dliNotePreGetProcAddress && info->hmodCur == none ? StandInFor(*info) : nullptr;
}

FARPROC WINAPI Fail(unsigned event, PDelayLoadInfo info) {
  return event == dliFailGetProc ? StandInFor(*info) : nullptr;
}

}  // namespace
}  // namespace zt

PfnDliHook __pfnDliNotifyHook2 = zt::Notify;
PfnDliHook __pfnDliFailureHook2 = zt::Fail;
