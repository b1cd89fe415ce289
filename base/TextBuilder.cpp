#include "TextBuilder.h"

#include <utility>

#include "CodePage.h"

namespace zt {

TextBuilder::TextBuilder() = default;
TextBuilder::~TextBuilder() = default;

TextBuilder& TextBuilder::operator<<(std::string_view text) {
  text_ += text;
  return *this;
}

TextBuilder& TextBuilder::operator<<(std::wstring_view text) { return *this << std::string_view(ToNarrow(text)); }

std::string TextBuilder::Take() { return std::move(text_); }

}  // namespace zt
