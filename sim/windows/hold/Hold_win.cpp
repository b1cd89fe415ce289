// zt-hold: another program that has what the agent wants.
//
//   zt-hold file PATH       opens a file for itself alone; the file is made if it is missing
//   zt-hold mutex NAME      makes a mutex of that name
//   zt-hold section NAME    makes a shared memory section of that name
//
// Writes "held" when it has it, and lets go when its input ends. Exit code 1 when it could not have it.
#include <windows.h>

#include <cstdio>
#include <string_view>

namespace {

HANDLE Take(std::wstring_view what, const wchar_t* name) {
  if (what == L"mutex") return CreateMutexW(nullptr, FALSE, name);
  if (what == L"section") return CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 4, name);
  if (what != L"file") return nullptr;
  const HANDLE file = CreateFileW(name, GENERIC_READ, 0, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  return file == INVALID_HANDLE_VALUE ? nullptr : file;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  const HANDLE held = count == 3 ? Take(arguments[1], arguments[2]) : nullptr;
  if (!held) return 1;
  std::puts("held");
  std::fflush(stdout);
  while (std::getchar() != EOF) {
  }
  CloseHandle(held);
  return 0;
}
