// Three functions of mingw-w64's run-time libraries, in place of their own by the same name. The originals would make
// the program a third larger for what it never does.

#include <stdarg.h>
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>

namespace __gnu_cxx {

// The handler of an exception that nobody catches. The original prints the exception's name, and brings along all that
// it takes to read a mangled one. The program ends without a word, as it always does.
void __verbose_terminate_handler();
void __verbose_terminate_handler() { _Exit(0); }

}  // namespace __gnu_cxx

// What snprintf and vsnprintf come down to. The original formats floating point on its own; Windows' C library has all
// that is needed here. Unlike that library's function this one ends the text with a NUL and returns the length of the
// whole text, as the C standard has it.
extern "C" int __mingw_vsnprintf(char* buffer, size_t size, const char* format, va_list arguments);
extern "C" int __mingw_vsnprintf(char* buffer, size_t size, const char* format, va_list arguments) {
  va_list again;
  va_copy(again, arguments);
  const int length = _vscprintf(format, again);
  va_end(again);
  if (size == 0) return length;
  if (_vsnprintf(buffer, size, format, arguments) < 0 || length < 0 || static_cast<size_t>(length) >= size) {
    buffer[size - 1] = '\0';
  }
  return length;
}

// The same for wide texts, as which the C++ library writes numbers.
extern "C" int __mingw_vsnwprintf(wchar_t* buffer, size_t size, const wchar_t* format, va_list arguments);
extern "C" int __mingw_vsnwprintf(wchar_t* buffer, size_t size, const wchar_t* format, va_list arguments) {
  va_list again;
  va_copy(again, arguments);
  const int length = _vscwprintf(format, again);
  va_end(again);
  if (size == 0) return length;
  if (_vsnwprintf(buffer, size, format, arguments) < 0 || length < 0 || static_cast<size_t>(length) >= size) {
    buffer[size - 1] = L'\0';
  }
  return length;
}
