// Jobs: what the program prints, kept byte for byte.
#include <windows.h>
#include <winspool.h>

#include "SpoolCall.h"
#include "SpoolFiles.h"

namespace {

// A call about the job of an open queue.
struct JobCall : SpoolCall {
  JobCall(const wchar_t* name, HANDLE printer, const std::wstring& more = L"")
      : JobCall(name, FindHandle(printer), more) {}

  // Ready: whether the call goes on; else its failure is the outcome. needsDocument: a job must have been started.
  bool Ready(bool needsDocument) {
    if (!handle || handle->xcv) return Fail(ERROR_INVALID_HANDLE);
    if (FailsByScript()) return false;
    if (needsDocument && handle->jobFile == INVALID_HANDLE_VALUE) return Fail(ERROR_SPL_NO_STARTDOC);
    return true;
  }

  SpoolHandle* handle;

 private:
  JobCall(const wchar_t* name, SpoolHandle* found, const std::wstring& more)
      : SpoolCall(name, Quoted(found ? found->target->name().c_str() : nullptr) + more,
                  found ? found->target : nullptr),
        handle(found) {}
};

}  // namespace

extern "C" DWORD WINAPI StartDocPrinterW(HANDLE printer, DWORD level, LPBYTE info) {
  std::wstring more = L" level " + std::to_wstring(level);
  if (level == 1 && info) {
    const auto& document = *reinterpret_cast<const DOC_INFO_1W*>(info);
    more += L" document " + Quoted(document.pDocName) + L" output " + Quoted(document.pOutputFile) + L" datatype " +
            Quoted(document.pDatatype);
  }
  JobCall call(L"StartDocPrinterW", printer, more);
  if (!call.Ready(false)) return 0;
  if (level != 1 || !info) return static_cast<DWORD>(call.Fail(ERROR_INVALID_LEVEL));
  if (call.handle->jobFile != INVALID_HANDLE_VALUE) return static_cast<DWORD>(call.Fail(ERROR_INVALID_PRINTER_STATE));
  const auto [file, number] = CreateJobFile();
  if (file == INVALID_HANDLE_VALUE) return static_cast<DWORD>(call.Fail(GetLastError()));
  call.handle->jobFile = file;
  call.Succeed(L", job " + std::to_wstring(number));
  return number;
}

extern "C" BOOL WINAPI StartPagePrinter(HANDLE printer) {
  JobCall call(L"StartPagePrinter", printer);
  return call.Ready(true) && call.Succeed();
}

extern "C" BOOL WINAPI WritePrinter(HANDLE printer, LPVOID data, DWORD size, LPDWORD written) {
  JobCall call(L"WritePrinter", printer, L" size " + std::to_wstring(size));
  if (written) *written = 0;
  if (!call.Ready(true)) return FALSE;
  DWORD stored = 0;
  if (!WriteFile(call.handle->jobFile, data, size, &stored, nullptr)) return call.Fail(GetLastError());
  const DWORD told = call.Scripted(L"written").value_or(stored);
  if (written) *written = told;
  return call.Succeed(L", written " + std::to_wstring(told));
}

extern "C" BOOL WINAPI EndPagePrinter(HANDLE printer) {
  JobCall call(L"EndPagePrinter", printer);
  return call.Ready(true) && call.Succeed();
}

extern "C" BOOL WINAPI EndDocPrinter(HANDLE printer) {
  JobCall call(L"EndDocPrinter", printer);
  if (!call.Ready(true)) return FALSE;
  CloseHandle(call.handle->jobFile);
  call.handle->jobFile = INVALID_HANDLE_VALUE;
  return call.Succeed();
}

// Whatever else Windows' own libraries import is not served.
extern "C" INT_PTR WINAPI SpoolNotServed() {
  Record(L"a function that is not served");
  SetLastError(ERROR_CALL_NOT_IMPLEMENTED);
  return 0;
}
