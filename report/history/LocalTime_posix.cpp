#include "LocalTime.h"

namespace zt {

std::optional<std::tm> ToLocalTime(std::time_t time) {
  std::tm local = {};
  if (!localtime_r(&time, &local)) return std::nullopt;
  return local;
}

}  // namespace zt
