#include "KVFLocalSetting.h"

#include <windows.h>
#include <shlobj.h>
#include <shlwapi.h>

#include <algorithm>
#include <optional>
#include <string_view>

#include "AccessList.h"
#include "CodePage.h"
#include "FolderChain.h"
#include "Handle.h"
#include "Trace.h"

namespace zt {
namespace {

constexpr LONGLONG kMaximumFileSize = 16 * 1024 * 1024;

// Empty when there is no such folder, or its path is too long.
std::wstring SettingsFolder() {
  wchar_t folder[MAX_PATH] = {};
  if (FAILED(SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder))) return {};
  if (!PathAppendW(folder, L"Velnora") || !PathAppendW(folder, L"Printer")) return {};
  return folder;
}

std::wstring SettingsPath(const std::wstring& folder, std::string_view name) {
  // A name alone would be a file of whatever folder the program was started in.
  if (folder.empty()) return {};
  wchar_t path[MAX_PATH] = {};
  // A path that is too long for the buffer leaves a store without a file.
  if (!PathCombineW(path, folder.c_str(), (ToWide(name) + L".ini").c_str())) return {};
  return path;
}

FileHandle OpenExclusively(const std::wstring& path, DWORD disposition) {
  return FileHandle(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

// A new file is opened to everyone, or the first agent of an administrator would lock out those of other users.
FileHandle OpenForWriting(const std::wstring& path) {
  if (FileHandle existing = OpenExclusively(path, OPEN_EXISTING)) return existing;
  if (!OpenExclusively(path, OPEN_ALWAYS)) return FileHandle();
  GrantEveryoneFullAccess(path);
  return OpenExclusively(path, OPEN_ALWAYS);
}

// A file that is there must be writable, or a run would repeat its work for ever without remembering it.
bool IsLocked(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) {
    const DWORD error = GetLastError();
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) return false;
  } else if (attributes & FILE_ATTRIBUTE_DIRECTORY) {
    return false;
  }
  return !OpenExclusively(path, OPEN_ALWAYS);
}

std::optional<std::string> ReadAll(const FileHandle& file) {
  LARGE_INTEGER size = {};
  if (!GetFileSizeEx(file.Get(), &size) || size.QuadPart > kMaximumFileSize) return std::nullopt;
  std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
  DWORD read = 0;
  if (!ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr)) return std::nullopt;
  bytes.resize(read);
  return bytes;
}

bool WriteAt(const FileHandle& file, std::size_t at, std::string_view bytes) {
  OVERLAPPED place = {};
  place.Offset = static_cast<DWORD>(at);
  DWORD written = 0;
  return WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, &place) &&
         written == bytes.size();
}

void CutTo(const FileHandle& file, LARGE_INTEGER size) {
  if (SetFilePointerEx(file.Get(), size, nullptr, FILE_BEGIN)) SetEndOfFile(file.Get());
}

// What makes the file longer goes first: where the disk is full, it fails before any of the old history is overwritten.
bool WriteAll(const FileHandle& file, std::string_view bytes) {
  LARGE_INTEGER size = {};
  if (!GetFileSizeEx(file.Get(), &size)) return false;
  const auto inPlace =
      static_cast<std::size_t>(std::min<ULONGLONG>(static_cast<ULONGLONG>(size.QuadPart), bytes.size()));
  if (WriteAt(file, inPlace, bytes.substr(inPlace))) return WriteAt(file, 0, bytes.substr(0, inPlace));
  CutTo(file, size);
  return false;
}

}  // namespace

KVFLocalSetting::KVFLocalSetting(std::string_view name) : folder_(SettingsFolder()) {
  if (!name.empty()) path_ = SettingsPath(folder_, name);
  CreateFolderChain(folder_);
}

KVFLocalSetting::~KVFLocalSetting() {
  if (dirty_ && !path_.empty() && !Save(path_)) ZT_TRACE(Error, "Failed to save to file!");
}

bool KVFLocalSetting::Load() {
  sections_.clear();
  if (path_.empty() || IsLocked(path_)) return false;
  const FileHandle file(CreateFileW(path_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
  // A file that another start has open by now is locked, too. Taken for a first run, the whole history would be lost.
  if (!file) return GetLastError() != ERROR_SHARING_VIOLATION;
  const std::optional<std::string> text = ReadAll(file);
  if (!text) return false;
  sections_ = ParseIni(*text);
  return true;
}

bool KVFLocalSetting::CanBeKept() const {
  const DWORD attributes = GetFileAttributesW(path_.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) return !(attributes & FILE_ATTRIBUTE_DIRECTORY);
  // For these microseconds another start's Load finds the file locked, and ends as the settings were; its next one goes
  // on.
  const FileHandle probe(CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                     FILE_ATTRIBUTE_NORMAL | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
  return probe || GetLastError() == ERROR_FILE_EXISTS;  // another process was faster
}

bool KVFLocalSetting::Save(const std::wstring& path) const {
  WriteDebug(path);
  // The file is not truncated, on purpose: a process that dies while it writes must not leave an empty history.
  const FileHandle file = OpenForWriting(path);
  return file && WriteAll(file, FormatIni(sections_));
}

void KVFLocalSetting::CreateSettingsFile() const {
  if (!path_.empty()) OpenForWriting(path_);
}

bool KVFLocalSetting::DeleteSettingsFile() {
  if (path_.empty()) return false;
  if (DeleteFileW(path_.c_str())) return true;
  const std::wstring message = L"Can't delete file (" + path_ + L")!!!";
  WriteKvfDebug(message);
  ZT_TRACE(Warning, message);
  return false;
}

}  // namespace zt
