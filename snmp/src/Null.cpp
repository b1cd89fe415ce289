#include "ztsnmp/Null.h"

EnumDataType Null::getDataType() const noexcept { return DataTypeNull; }
const char* Null::toString() const noexcept { return ""; }
int Null::isValid() const noexcept { return StatusSuccess; }
