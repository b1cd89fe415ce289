#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// xmlText makes the document of an input. The element <many/> stands for seventy toners: more than four, and more
/// than a page shows findings of.
inline std::string xmlText(const std::uint8_t* data, std::size_t size) {
  constexpr std::string_view kMany = "<many/>";
  std::string text(data, data + size);
  if (const std::size_t at = text.find(kMany); at != std::string::npos) {
    std::string toners;
    for (int i = 0; i < 70; ++i) toners += "<Toner/>";
    text.replace(at, kMany.size(), toners);
  }
  return text;
}
