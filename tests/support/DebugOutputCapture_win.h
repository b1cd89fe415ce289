#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "CodePage.h"

namespace zt {

// DebugOutputCapture collects, while it lives, what this process writes to the debugger output: the system delivers it
// as exceptions that this handler takes. One at a time.
class DebugOutputCapture {
 public:
  DebugOutputCapture() {
    lines.clear();
    handler_ = AddVectoredExceptionHandler(1, &Take);
  }
  ~DebugOutputCapture() { RemoveVectoredExceptionHandler(handler_); }
  DebugOutputCapture(const DebugOutputCapture&) = delete;
  DebugOutputCapture& operator=(const DebugOutputCapture&) = delete;

  inline static std::vector<std::string> lines;

 private:
  static LONG CALLBACK Take(EXCEPTION_POINTERS* exception) {
    constexpr DWORD printNarrow = 0x40010006;  // DBG_PRINTEXCEPTION_C
    constexpr DWORD printWide = 0x4001000A;    // DBG_PRINTEXCEPTION_WIDE_C
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    if (record.ExceptionCode == printWide) {
      lines.push_back(ToNarrow(reinterpret_cast<const wchar_t*>(record.ExceptionInformation[1])));
    } else if (record.ExceptionCode == printNarrow) {
      lines.emplace_back(reinterpret_cast<const char*>(record.ExceptionInformation[1]));
    } else {
      return EXCEPTION_CONTINUE_SEARCH;
    }
    return EXCEPTION_CONTINUE_EXECUTION;
  }

  void* handler_;
};

}  // namespace zt
