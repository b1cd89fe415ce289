#pragma once

#include <string>
#include <string_view>

#include "TextBuilder.h"

namespace zt {

// Severity of a trace line. There are no others; the number stands in the line.
enum class Severity : unsigned { Error = 2, Warning = 3, Information = 4 };

// traceLevel is the configured level: a line is written when it is at least the line's severity. 0, the default, writes
// nothing.
extern unsigned traceLevel;

// WriteTrace appends one line to the trace log, whatever the level.
// `source` is the path of the source file; the log keeps its name without folder and extension.
void WriteTrace(Severity severity, std::string_view source, int line, std::string_view message);

// WriteDebug writes the text, as it is, to the debugger output. It does not touch the log. A text that holds a path
// goes out wide: the code page may lack some of its characters.
void WriteDebug(std::string_view text);
void WriteDebug(std::wstring_view text);

// WriteKvfDebug writes "[KVF] " and the text to the debugger output: the form of the HTTP layer's lines, and of that of
// a settings file that cannot be deleted. The printer-access layer's lines have no tag, or their own.
void WriteKvfDebug(std::string_view text);
void WriteKvfDebug(std::wstring_view text);

// ScopedLogger marks in the debugger output when a scope is entered and left. No caller in this program; kept for
// whoever debugs one of its scopes.
class ScopedLogger {
 public:
  explicit ScopedLogger(std::string_view scope) : scope_(scope) { WriteDebug(scope_ + " >> enter\n"); }
  ~ScopedLogger() { WriteDebug(scope_ + " << leave\n"); }
  ScopedLogger(const ScopedLogger&) = delete;
  ScopedLogger& operator=(const ScopedLogger&) = delete;

 private:
  std::string scope_;
};

}  // namespace zt

// ZT_TRACE(Warning, "found " << count << " ports") traces one line. The text is built only when the level asks for it.
// NOLINTBEGIN(bugprone-macro-parentheses): the argument goes on with the chain of <<.
#define ZT_TRACE(severity, text)                                                                            \
  do {                                                                                                      \
    if (::zt::traceLevel >= static_cast<unsigned>(::zt::Severity::severity)) {                              \
      ::zt::WriteTrace(::zt::Severity::severity, __FILE__, __LINE__, (::zt::TextBuilder() << text).Text()); \
    }                                                                                                       \
  } while (false)
// NOLINTEND(bugprone-macro-parentheses)
