#include "Joined.h"

#include "Words.h"

namespace zt {

void Piece::AppendTo(std::wstring& text) const {
  switch (kind_) {
    case Kind::Constant:
      for (const char* c = constant_; *c; ++c) text += static_cast<wchar_t>(*c);
      return;
    case Kind::Wide:
      text.append(wide_, size_);
      return;
    case Kind::Bytes:
      text += Shown({bytes_, size_});
      return;
    case Kind::Number:
      text += std::to_wstring(number_);
      return;
  }
}

std::wstring Joined(std::initializer_list<Piece> pieces) {
  std::wstring joined;
  for (const Piece& piece : pieces) piece.AppendTo(joined);
  return joined;
}

}  // namespace zt
