#include "ztsnmp/SNMPDataType.h"

SNMPDataType::SNMPDataType() noexcept = default;
// NOLINTBEGIN(misc-unused-parameters): what is defaulted uses them.
SNMPDataType::SNMPDataType(const SNMPDataType& other) noexcept = default;
SNMPDataType& SNMPDataType::operator=(const SNMPDataType& other) noexcept = default;
// NOLINTEND(misc-unused-parameters)
SNMPDataType::~SNMPDataType() = default;
