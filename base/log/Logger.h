#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Handle.h"
#include "Trace.h"

namespace zt {

// TraceListener hears a trace line as the log would hold it, without its line end, on the thread that writes it.
using TraceListener = std::function<void(Severity severity, const std::string& line)>;

// Logger writes trace lines to the text file that an administrator names in the registry. Until a configuration is
// found it is off and costs nothing. Every failure is silent: lines are lost, or rotation waits for a later flush.
//
// Lines are held back and written in batches, and the file is open only during a batch, so that other processes can
// append to it, rotate it or read it in between.
class Logger {
 public:
  Logger() = default;
  // Flushes what is pending.
  ~Logger();
  Logger(const Logger&) = delete;
  Logger& operator=(const Logger&) = delete;

  // Start reads Level (REG_DWORD) and File (string) under HKEY_LOCAL_MACHINE\SOFTWARE\Tressil\Logger\<component>. When
  // both are usable and the level is not 0, it switches the log on, sets traceLevel and writes the path to the debugger
  // output. To be called at most once.
  void Start(const std::wstring& component);

  // Listen makes the listener hear every line, whatever the level of the file, which gets no more lines for it; null
  // ends that. Lines must not be written meanwhile.
  void Listen(TraceListener listener);

  // Write queues one line, if it is of the file's level. With more than 10 lines queued it flushes.
  void Write(Severity severity, std::string_view source, int line, std::string_view message);

  // Flush rotates the file when it has grown beyond 1 MiB, then appends every queued line. A file that is new or cannot
  // be opened is given full access for everyone and normal attributes first; if it does not open then, the lines are
  // lost.
  void Flush();

 private:
  FileHandle OpenForAppending() const;
  void RotateWhenLarge() const;

  bool enabled_ = false;
  unsigned level_ = 0;  // of the file
  TraceListener listener_;
  std::wstring path_;
  std::vector<std::string> pending_;
  CRITICAL_SECTION guard_ = {};  // of the queue, the file and the rotation; initialised when enabled
};

// processLogger is the log that ZT_TRACE writes to.
extern Logger processLogger;

}  // namespace zt
