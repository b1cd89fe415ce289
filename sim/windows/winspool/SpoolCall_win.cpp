#include "SpoolCall.h"

#include <map>

#include "SpoolFiles.h"

namespace {

std::recursive_mutex spoolerLock;
std::map<HANDLE, std::unique_ptr<SpoolHandle>> openHandles;

}  // namespace

HANDLE AddHandle(const SpoolHandle& handle) {
  auto owned = std::make_unique<SpoolHandle>(handle);
  const HANDLE key = owned.get();
  openHandles.emplace(key, std::move(owned));
  return key;
}

SpoolHandle* FindHandle(HANDLE handle) {
  const std::scoped_lock lock(spoolerLock);
  const auto found = openHandles.find(handle);
  return found == openHandles.end() ? nullptr : found->second.get();
}

bool RemoveHandle(HANDLE handle) {
  const auto found = openHandles.find(handle);
  if (found == openHandles.end()) return false;
  if (found->second->jobFile != INVALID_HANDLE_VALUE) CloseHandle(found->second->jobFile);
  openHandles.erase(found);
  return true;
}

size_t CountHandles() { return openHandles.size(); }

SpoolCall::SpoolCall(std::wstring name, const std::wstring& what, ScriptSection* target)
    : lock_(spoolerLock), name_(std::move(name)), what_(what), target_(target) {}

std::optional<unsigned long> SpoolCall::Scripted(std::wstring_view name, std::wstring_view aspect) {
  const std::wstring key = std::wstring(name) + L"." + std::wstring(aspect);
  if (target_) {
    if (const auto number = target_->Next(key)) return number;
  }
  return SpoolScript::Instance().Common().Next(key);
}

bool SpoolCall::FailsByScript() {
  const unsigned long error = Scripted(L"fail").value_or(ERROR_SUCCESS);
  if (error == ERROR_SUCCESS) return false;
  Fail(error, L", by script");
  return true;
}

BOOL SpoolCall::Fail(DWORD error, const std::wstring& more) {
  Record(name_ + L" " + what_ + L" -> error " + std::to_wstring(error) + more);
  SetLastError(error);
  return FALSE;
}

BOOL SpoolCall::Succeed(const std::wstring& more) {
  Record(name_ + L" " + what_ + L" -> ok" + more);
  return TRUE;
}

std::wstring Quoted(const wchar_t* text) {
  if (!text) return L"-";
  return L"\"" + std::wstring(text) + L"\"";
}
