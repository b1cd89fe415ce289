#include "DriverModel.h"

namespace zt {

std::wstring_view ModelOfDriver(std::wstring_view driverName) {
  // The order decides: a driver named "Model 9 XPS PCL" is for the "Model 9 XPS".
  for (const std::wstring_view language : {L" PS", L" PCL", L" XPS"}) {
    const std::size_t at = driverName.rfind(language);
    if (at != std::wstring_view::npos) return driverName.substr(0, at);
  }
  return driverName;
}

}  // namespace zt
