#pragma once

#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace zt {

// Ascii is a constant text. The pages are full of sentences, and as wide texts they would take twice the room.
class Ascii {
 public:
  template <std::size_t Size>
  consteval Ascii(const char (&text)[Size]) : text_(text) {
    for (const char c : text) {
      if (static_cast<unsigned char>(c) > 0x7F) throw "not ASCII";  // and so does not compile
    }
  }
  constexpr const char* Get() const { return text_; }

 private:
  const char* text_;
};

// Piece is a part of a text: a constant, a wide text that lives elsewhere, bytes of a printer, a server or a file,
// which are made fit to be shown (see Shown), or a number.
class Piece {
 public:
  constexpr Piece(Ascii constant) : kind_(Kind::Constant), constant_(constant.Get()) {}
  template <std::size_t Size>
  consteval Piece(const char (&constant)[Size]) : Piece(Ascii(constant)) {}
  Piece(std::wstring_view text) : kind_(Kind::Wide), size_(static_cast<unsigned>(text.size())), wide_(text.data()) {}
  Piece(std::string_view bytes)
      : kind_(Kind::Bytes), size_(static_cast<unsigned>(bytes.size())), bytes_(bytes.data()) {}
  Piece(const std::string& bytes) : Piece(std::string_view(bytes)) {}
  Piece(const std::wstring& text) : Piece(std::wstring_view(text)) {}
  Piece(const wchar_t* text) : Piece(std::wstring_view(text)) {}
  Piece(std::integral auto number) : kind_(Kind::Number), number_(static_cast<long long>(number)) {}

  void AppendTo(std::wstring& text) const;

 private:
  enum class Kind : unsigned { Constant, Wide, Bytes, Number };
  Kind kind_;
  unsigned size_ = 0;  // of a wide text and of bytes
  union {
    const char* constant_;
    const wchar_t* wide_;
    const char* bytes_;
    long long number_;
  };
};

// Joined returns the pieces one behind the other. A chain of + is several times as much code.
std::wstring Joined(std::initializer_list<Piece> pieces);

}  // namespace zt
