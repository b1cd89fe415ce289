#pragma once

#include <windows.h>

#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "SpoolScript.h"

// SpoolHandle: what an open printer handle stands for: a queue, or the Xcv side of a port.
struct SpoolHandle {
  ScriptSection* target;
  bool xcv = false;
  HANDLE jobFile = INVALID_HANDLE_VALUE;
};

// Handles are checked before use: one that is unknown or closed already gives null, as the real spooler refuses it.
HANDLE AddHandle(const SpoolHandle& handle);
SpoolHandle* FindHandle(HANDLE handle);
bool RemoveHandle(HANDLE handle);
size_t CountHandles();

// SpoolCall: one call of the program into the spooler. It holds the spooler's lock, asks the script whether the call is
// to fail, and records the call with its outcome:
//   GetPrinterW "Office" level 2 size 0 -> error 122, needed 396
class SpoolCall {
 public:
  // what: the arguments for the record. target: the queue or port, null when the call has none or it is unknown.
  SpoolCall(std::wstring name, const std::wstring& what, ScriptSection* target);

  // Scripted: the next number of "NAME.<aspect>", in the target's section, else in [spooler].
  std::optional<unsigned long> Scripted(std::wstring_view aspect) { return Scripted(name_, aspect); }
  std::optional<unsigned long> Scripted(std::wstring_view name, std::wstring_view aspect);

  // FailsByScript: whether "NAME.fail" orders a failure now, which then is the outcome.
  bool FailsByScript();

  // The outcome: the call's last error, its record, and what it returns.
  BOOL Fail(DWORD error, const std::wstring& more = L"");
  BOOL Succeed(const std::wstring& more = L"");

 private:
  std::unique_lock<std::recursive_mutex> lock_;
  std::wstring name_;
  std::wstring what_;
  ScriptSection* target_;
};

// Quoted: a text for the record.
std::wstring Quoted(const wchar_t* text);
