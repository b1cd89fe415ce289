#pragma once

#include <string>

namespace zt {

// ServerPolicy is the report server's policy for product protection.
struct ServerPolicy {
  int transmissionDuration = 7;           // days between two product-protection sends
  std::string nsLanguageCode = "24, 59";  // comma-separated country indexes; at most 519 bytes
  int tonerMaxLife = 150;                 // toner life limit
  bool operator==(const ServerPolicy&) const = default;
};

}  // namespace zt
