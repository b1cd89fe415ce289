#include "ztsnmp/Null.h"

Null::Null() noexcept = default;
Null::Null(const Null& other) noexcept = default;
Null& Null::operator=(const Null& other) noexcept = default;
Null::~Null() = default;

EnumDataType Null::getDataType() const noexcept { return DataTypeNull; }
const char* Null::toString() const noexcept { return ""; }
int Null::isValid() const noexcept { return StatusSuccess; }
