#pragma once

#include <string_view>

namespace zt {

// HostFromLocationUrl returns the host of a URL: what stands behind the first ':' and up to two '/', up to the next ':'
// or '/'; of an IPv6 literal in brackets, what stands between them. Empty when there is none. The result points into
// `url`.
std::wstring_view HostFromLocationUrl(std::wstring_view url);

}  // namespace zt
