#include "Codes.h"

namespace zt {

void Codes::Add(std::string_view code) {
  text_ += code;
  ++count_;
}

void Codes::Replace(std::string_view code) {
  text_ = code;
  count_ = 1;
}

}  // namespace zt
