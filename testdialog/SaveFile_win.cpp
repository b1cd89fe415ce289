#include "SaveFile_win.h"

#include <windows.h>
#include <commdlg.h>

#include <string>

#include "Joined.h"
#include "SystemLibrary_win.h"

namespace zt {
namespace {

bool Write(const wchar_t* path, std::string_view bytes) {
  const FileHandle file(CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  return file && WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
         written == bytes.size();
}

}  // namespace

void SaveWithDialog(HWND owner, const wchar_t* name, const wchar_t* suffix, std::string_view bytes) {
  const LibraryHandle library = LoadSystemLibrary(L"comdlg32.dll");
  const auto ask = FindFunction<decltype(GetSaveFileNameW)>(library.Get(), "GetSaveFileNameW");
  if (!ask) return;
  wchar_t path[1024] = L"";
  lstrcpynW(path, name, static_cast<int>(std::size(path)));
  // Each text of the filter ends with a NUL, and the filter with another one.
  constexpr std::wstring_view kEnd(L"\0", 1);
  const std::wstring filter = Joined({"*.", suffix, kEnd, "*.", suffix, kEnd, "*.*", kEnd, "*.*", kEnd});
  OPENFILENAMEW question = {};
  question.lStructSize = sizeof(question);
  question.hwndOwner = owner;
  question.lpstrFilter = filter.c_str();
  question.lpstrFile = path;
  question.nMaxFile = static_cast<DWORD>(std::size(path));
  question.lpstrDefExt = suffix;
  question.Flags = OFN_OVERWRITEPROMPT | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY;
  if (!ask(&question)) return;
  if (!Write(path, bytes)) {
    MessageBoxW(owner, Joined({"The file could not be written:\n\n", path}).c_str(), L"Save", MB_OK | MB_ICONERROR);
  }
}

}  // namespace zt
