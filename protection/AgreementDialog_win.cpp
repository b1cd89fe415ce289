#include "AgreementDialog.h"

#include <windows.h>

#include "Handle.h"
#include "ProgramPath.h"
#include "ProtectionAgreementUI.h"
#include "Trace.h"

namespace zt {
namespace {

constexpr wchar_t kLibraryName[] = L"UA.dll";
constexpr char kEntryName[] = "ShowProtectionAgreementUI";

// Path of the library in the program's own folder.
std::wstring LibraryPath() {
  const std::wstring program = ProgramPath();
  return program.substr(0, program.find_last_of(L'\\') + 1) + kLibraryName;
}

LibraryHandle LoadAgreementLibrary() {
  const std::wstring path = LibraryPath();
  // Neither the library nor what it needs may come from the current folder or the search path, where anybody can put
  // one.
  LibraryHandle library(
      LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32));
  const DWORD error = GetLastError();
  if (!library) ZT_TRACE(Warning, "[UA] no agreement dialog: UA.dll cannot be loaded, error " << error);
  return library;
}

}  // namespace

Agreement ShowAgreementDialog(const std::wstring& queue, const std::wstring& language, bool countryIs52) {
  const LibraryHandle library = LoadAgreementLibrary();
  if (!library) return Agreement::DisagreedUnreported;
  const FARPROC entry = GetProcAddress(library.Get(), kEntryName);
  if (!entry) {
    ZT_TRACE(Warning, "[UA] no agreement dialog: UA.dll does not export " << kEntryName);
    return Agreement::DisagreedUnreported;
  }
  // By way of void (*)(): the compiler knows that type as one that fits any function.
  const auto show = reinterpret_cast<ShowProtectionAgreementUIFunction>(reinterpret_cast<void (*)()>(entry));
  const int answer = show(queue.c_str(), language.c_str(), countryIs52 ? TRUE : FALSE);
  switch (answer) {
    case UA_AGREED:
      return Agreement::Agreed;
    case UA_DISAGREED:
      return Agreement::Disagreed;
    case UA_DISAGREED_UNREPORTED:
      return Agreement::DisagreedUnreported;
    default:
      ZT_TRACE(Warning, "[UA] the agreement dialog answered " << answer);
      return Agreement::DisagreedUnreported;
  }
}

}  // namespace zt
