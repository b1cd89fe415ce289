#pragma once

#include <string>

namespace zt {

// DiscoverAddress asks Windows' Function Discovery for the network address of the PnP-X device with that identifier.
// Empty when the device or its address is unknown.
std::wstring DiscoverAddress(const std::wstring& pnpxID);

}  // namespace zt
