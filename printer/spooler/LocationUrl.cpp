#include "LocationUrl.h"

namespace zt {

std::wstring_view HostFromLocationUrl(std::wstring_view url) {
  const std::size_t colon = url.find(L':');
  if (colon == std::wstring_view::npos) return {};
  url.remove_prefix(colon + 1);
  for (int slashes = 0; slashes < 2 && url.starts_with(L'/'); ++slashes) url.remove_prefix(1);
  if (!url.starts_with(L'[')) return url.substr(0, url.find_first_of(L":/"));
  const std::size_t bracket = url.find(L']');
  if (bracket == std::wstring_view::npos) return {};
  return url.substr(1, bracket - 1);
}

}  // namespace zt
