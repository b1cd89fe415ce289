#include "ztsnmp/SNMPDataType.h"

SNMPDataType::SNMPDataType() noexcept = default;
SNMPDataType::SNMPDataType(const SNMPDataType& other) noexcept = default;
SNMPDataType& SNMPDataType::operator=(const SNMPDataType& other) noexcept = default;
SNMPDataType::~SNMPDataType() = default;
