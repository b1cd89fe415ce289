#include "Trace.h"

namespace zt {

unsigned traceLevel = 0;

}  // namespace zt
