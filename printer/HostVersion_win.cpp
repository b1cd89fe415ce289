#include "HostVersion.h"

#include <windows.h>

#include "CodePage.h"
#include "Handle.h"

namespace zt {
namespace {

struct FindHandleTraits {
  using Type = HANDLE;
  static Type Invalid() { return INVALID_HANDLE_VALUE; }
  static void Close(Type handle) { FindClose(handle); }
};
using FindHandle = Handle<FindHandleTraits>;

bool Exists(const std::wstring& path) {
  WIN32_FIND_DATAW data;
  return static_cast<bool>(FindHandle(FindFirstFileW(path.c_str(), &data)));
}

std::wstring FindVersionFile(const std::wstring& programPath) {
  const std::size_t name = programPath.find_last_of(L"\\/") + 1;  // 0 in a path without folder
  std::wstring path = programPath.substr(0, name) + L"pp.ver";
  if (Exists(path)) return path;

  const std::size_t dot = programPath.find_last_of(L'.');
  const bool hasExtension = dot != std::wstring::npos && dot >= name;
  path = (hasExtension ? programPath.substr(0, dot) : programPath) + L".ver";
  return Exists(path) ? path : std::wstring();
}

}  // namespace

std::optional<std::string> ReadHostVersion(const std::wstring& programPath) {
  const std::wstring path = FindVersionFile(programPath);
  if (path.empty()) return std::nullopt;
  wchar_t version[260] = {};
  const DWORD length = GetPrivateProfileStringW(L"Version", L"MainVersion", L"", version, 260, path.c_str());
  if (length == 0) return std::nullopt;
  return ToNarrow({version, length});
}

}  // namespace zt
