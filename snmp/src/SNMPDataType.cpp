#include "ztsnmp/SNMPDataType.h"

SNMPDataType::SNMPDataType() noexcept = default;
// NOLINTNEXTLINE(misc-unused-parameters): what is defaulted uses it.
SNMPDataType::SNMPDataType(const SNMPDataType& other) noexcept = default;
SNMPDataType& SNMPDataType::operator=(const SNMPDataType& other) noexcept = default;
SNMPDataType::~SNMPDataType() = default;
