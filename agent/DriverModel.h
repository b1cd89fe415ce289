#pragma once

#include <string_view>

namespace zt {

// ModelOfDriver returns the model that a driver's name begins with: the part before the last " PS", or else before the
// last " PCL", or else before the last " XPS"; the whole name when it holds none of them. Case counts.
std::wstring_view ModelOfDriver(std::wstring_view driverName);

}  // namespace zt
