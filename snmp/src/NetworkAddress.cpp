#include "ztsnmp/NetworkAddress.h"

NetworkAddress::NetworkAddress() noexcept = default;
NetworkAddress::NetworkAddress(const NetworkAddress& other) noexcept = default;
NetworkAddress& NetworkAddress::operator=(const NetworkAddress& other) noexcept = default;
NetworkAddress::~NetworkAddress() = default;
