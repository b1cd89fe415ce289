#pragma once

#include <concepts>
#include <string>
#include <string_view>

namespace zt {

// TextBuilder joins texts and whole numbers with <<. It stands in for a string stream, which would add half a megabyte
// to the program.
class TextBuilder {
 public:
  // Out of line, all of it: the expression stands at every trace site.
  TextBuilder();
  ~TextBuilder();
  TextBuilder(const TextBuilder&) = delete;
  TextBuilder& operator=(const TextBuilder&) = delete;

  TextBuilder& operator<<(std::string_view text);

  // Wide text is converted to the system ANSI code page.
  TextBuilder& operator<<(std::wstring_view text);

  template <std::integral Number>
  requires(!std::same_as<Number, bool> && !std::same_as<Number, char> && !std::same_as<Number, wchar_t>) TextBuilder&
  operator<<(Number number) {
    return *this << std::string_view(std::to_string(number));
  }

  // Text returns what was joined so far; it lives as long as the builder is left alone.
  std::string_view Text() const { return text_; }

  // Take moves the text out of the builder.
  std::string Take();

 private:
  std::string text_;
};

}  // namespace zt
