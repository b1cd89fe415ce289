#include "Logger.h"

#include <algorithm>
#include <utility>

#include "AccessList.h"
#include "LogLine.h"
#include "RegistryKey.h"

namespace zt {
namespace {

constexpr std::size_t kMaximumPathLength = 259;
constexpr std::size_t kLinesHeldBack = 10;
constexpr std::uint64_t kRotationSize = 1048576;
constexpr int kOldestCopy = 5;
// 1024 spins; the top bit asks for the event to be allocated beforehand.
constexpr DWORD kSpinCount = 0x80000400;

class CriticalSectionLock {
 public:
  explicit CriticalSectionLock(CRITICAL_SECTION& section) : section_(section) { EnterCriticalSection(&section_); }
  ~CriticalSectionLock() { LeaveCriticalSection(&section_); }
  CriticalSectionLock(const CriticalSectionLock&) = delete;
  CriticalSectionLock& operator=(const CriticalSectionLock&) = delete;

 private:
  CRITICAL_SECTION& section_;
};

LogMoment CurrentMoment() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  return {now.wMonth, now.wDay, now.wHour, now.wMinute, GetTickCount64()};
}

FileHandle Append(const std::wstring& path, DWORD disposition) {
  return FileHandle(CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, disposition,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
}

// A folder whose path was given by mistake must not be opened to everyone.
bool IsFolder(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

}  // namespace

Logger processLogger;

Logger::~Logger() {
  if (!enabled_) return;
  Flush();
  traceLevel = 0;
  enabled_ = false;
  DeleteCriticalSection(&guard_);
}

void Logger::Start(const std::wstring& component) {
  const RegistryKey key = RegistryKey::Open(L"SOFTWARE\\Tressil\\Logger\\" + component, KEY_READ);
  const auto level = key.ReadDword(L"Level");
  const auto file = key.ReadString(L"File");
  if (!level || *level == 0 || !file || file->size() > kMaximumPathLength) return;

  path_ = *file;
  WriteDebug(path_);
  InitializeCriticalSectionAndSpinCount(&guard_, kSpinCount);
  enabled_ = true;
  level_ = *level;
  traceLevel = level_;
}

void Logger::Listen(TraceListener listener) {
  listener_ = std::move(listener);
  traceLevel = listener_ ? std::max(level_, static_cast<unsigned>(Severity::Information)) : level_;
}

void Logger::Write(Severity severity, std::string_view source, int line, std::string_view message) {
  if (!enabled_ && !listener_) return;
  const std::string text =
      LogPrefix(CurrentMoment(), GetCurrentThreadId()) + "\t" + LogBody(severity, source, line, message);
  if (listener_) listener_(severity, text);
  if (level_ < static_cast<unsigned>(severity)) return;
  bool full = false;
  {
    const CriticalSectionLock lock(guard_);
    pending_.push_back(text + "\r\n");
    full = pending_.size() > kLinesHeldBack;
  }
  if (full) Flush();
}

void Logger::Flush() {
  if (!enabled_) return;
  const CriticalSectionLock lock(guard_);
  if (pending_.empty()) return;
  RotateWhenLarge();
  if (const FileHandle file = OpenForAppending()) {
    std::string lines;
    for (const std::string& line : pending_) lines += line;
    DWORD written = 0;
    WriteFile(file.Get(), lines.data(), static_cast<DWORD>(lines.size()), &written, nullptr);
  }
  pending_.clear();
}

FileHandle Logger::OpenForAppending() const {
  if (FileHandle existing = Append(path_, OPEN_EXISTING)) return existing;
  // Whether it could be made or not: it may be there and only be read-only, or closed to this user.
  Append(path_, OPEN_ALWAYS);
  if (IsFolder(path_)) return FileHandle();
  GrantEveryoneFullAccess(path_);
  return Append(path_, OPEN_ALWAYS);
}

void Logger::RotateWhenLarge() const {
  WIN32_FILE_ATTRIBUTE_DATA file;
  if (!GetFileAttributesExW(path_.c_str(), GetFileExInfoStandard, &file)) return;
  if (((std::uint64_t{file.nFileSizeHigh} << 32) | file.nFileSizeLow) <= kRotationSize) return;

  // The mutex is the sign that a process is rotating this file; nobody waits for it. One of another user's process may
  // refuse to be opened: then it exists, too.
  const KernelHandle inUse(CreateMutexW(nullptr, FALSE, L"_LOG___INUSE_"));
  if (!inUse || GetLastError() == ERROR_ALREADY_EXISTS) return;

  const auto copy = [&](int number) { return path_ + L"." + static_cast<wchar_t>(L'0' + number); };
  DeleteFileW(copy(kOldestCopy).c_str());
  for (int number = kOldestCopy - 1; number >= 0; --number) {
    MoveFileW(copy(number).c_str(), copy(number + 1).c_str());
  }
  MoveFileW(path_.c_str(), copy(0).c_str());
}

void WriteTrace(Severity severity, std::string_view source, int line, std::string_view message) {
  processLogger.Write(severity, source, line, message);
}

}  // namespace zt
