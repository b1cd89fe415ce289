#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <utility>

#include "CodePage.h"

namespace zt {

// TextBuilder joins texts and whole numbers with <<. It stands in for a string stream, which would add half a megabyte
// to the program.
class TextBuilder {
 public:
  TextBuilder& operator<<(std::string_view text) {
    text_ += text;
    return *this;
  }
  // Wide text is converted to the system ANSI code page.
  TextBuilder& operator<<(std::wstring_view text) {
    text_ += ToNarrow(text);
    return *this;
  }
  template <std::integral Number>
  requires(!std::same_as<Number, bool> && !std::same_as<Number, char> && !std::same_as<Number, wchar_t>) TextBuilder&
  operator<<(Number number) {
    text_ += std::to_string(number);
    return *this;
  }

  std::string Take() { return std::move(text_); }

 private:
  std::string text_;
};

}  // namespace zt
