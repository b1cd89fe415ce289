#include "Trace.h"

namespace zt {

unsigned traceLevel = 0;

void WriteKvfDebug(std::string_view text) { WriteDebug((TextBuilder() << "[KVF] " << text).Take()); }

void WriteKvfDebug(std::wstring_view text) { WriteDebug(L"[KVF] " + std::wstring(text)); }

}  // namespace zt
