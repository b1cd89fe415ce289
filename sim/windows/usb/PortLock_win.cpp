// klpmon.dll: the device-monitor library without a device monitor. Beside it lies klpmon.ini:
//
//   [answers]
//   PortAcquire = 1
//   PortRelease = 0 0 1
//
// Each call takes the next number, the last one stays, and 1 is the answer without any. What was asked goes to
// klpmon.txt beside the library.

#include <windows.h>

#include <cwchar>
#include <string>

namespace {

HMODULE library;

std::wstring PathBeside(const wchar_t* name) {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(library, path, MAX_PATH);
  const std::wstring own = path;
  return own.substr(0, own.find_last_of(L'\\') + 1) + name;
}

void Record(const std::string& line) {
  const HANDLE file = CreateFileW(PathBeside(L"klpmon.txt").c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr,
                                  OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  DWORD written = 0;
  WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
  CloseHandle(file);
}

int NextAnswer(const wchar_t* function, unsigned turn) {
  wchar_t value[256];
  GetPrivateProfileStringW(L"answers", function, L"1", value, 256, PathBeside(L"klpmon.ini").c_str());
  int answer = 1;
  wchar_t* rest = value;
  for (unsigned i = 0; i <= turn && *rest != L'\0'; ++i) answer = static_cast<int>(wcstol(rest, &rest, 10));
  return answer;
}

int Answer(const wchar_t* function, const char* narrowName, unsigned char port, unsigned& turn) {
  const int answer = NextAnswer(function, turn++);
  Record(std::string(narrowName) + " " + std::to_string(port) + " -> " + std::to_string(answer) + "\n");
  return answer;
}

}  // namespace

extern "C" int PortAcquire(unsigned char port) {
  static unsigned turn = 0;
  return Answer(L"PortAcquire", "PortAcquire", port, turn);
}

extern "C" int PortRelease(unsigned char port) {
  static unsigned turn = 0;
  return Answer(L"PortRelease", "PortRelease", port, turn);
}

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) {
    library = instance;
    Record("loaded\n");
  }
  if (reason == DLL_PROCESS_DETACH) Record("unloaded\n");
  return TRUE;
}
