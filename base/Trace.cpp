#include "Trace.h"

namespace zt {

unsigned traceLevel = 0;

void WriteKvfDebug(std::string_view text) { WriteDebug((TextBuilder() << "[KVF] " << text).Take()); }

}  // namespace zt
