#include "SpoolFiles.h"

#include <vector>

namespace {

std::wstring Variable(const wchar_t* name) {
  wchar_t value[MAX_PATH] = L"";
  const DWORD length = GetEnvironmentVariableW(name, value, MAX_PATH);
  return length < MAX_PATH ? std::wstring(value, length) : std::wstring();
}

// Ends in a backslash.
std::wstring ProgramFolder() {
  wchar_t path[MAX_PATH] = L"";
  std::wstring folder(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
  return folder.substr(0, folder.rfind(L'\\') + 1);
}

std::wstring RecordFolder() {
  const std::wstring folder = Variable(L"ZT_SPOOL_FOLDER");
  return folder.empty() ? ProgramFolder() : folder + L"\\";
}

}  // namespace

std::wstring WideFromUtf8(std::string_view text) {
  std::wstring wide(text.size(), L'\0');
  const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                                         static_cast<int>(wide.size()));
  wide.resize(static_cast<size_t>(length));
  return wide;
}

std::string ReadSpoolScript() {
  std::wstring path = Variable(L"ZT_SPOOL_SCRIPT");
  if (path.empty()) path = ProgramFolder() + L"winspool.ini";
  const HANDLE file =
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  std::string text(GetFileSize(file, nullptr), '\0');
  DWORD read = 0;
  if (!ReadFile(file, text.data(), static_cast<DWORD>(text.size()), &read, nullptr)) read = 0;
  CloseHandle(file);
  text.resize(read);
  return text;
}

void Record(std::wstring_view line) {
  std::string text(line.size() * 3 + 2, '\0');
  const int length = WideCharToMultiByte(CP_UTF8, 0, line.data(), static_cast<int>(line.size()), text.data(),
                                         static_cast<int>(text.size()), nullptr, nullptr);
  text.resize(static_cast<size_t>(length));
  text += "\n";
  const HANDLE file =
      CreateFileW((RecordFolder() + L"transcript.txt").c_str(), FILE_APPEND_DATA,
                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  DWORD written = 0;
  WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  CloseHandle(file);
}

std::pair<HANDLE, DWORD> CreateJobFile() {
  for (DWORD number = 1;; ++number) {
    const std::wstring path = RecordFolder() + L"job-" + std::to_wstring(number) + L".raw";
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW, 0, nullptr);
    if (file != INVALID_HANDLE_VALUE || GetLastError() != ERROR_FILE_EXISTS) return {file, number};
  }
}
