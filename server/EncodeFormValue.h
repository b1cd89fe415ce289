#pragma once

#include <string>
#include <string_view>

namespace zt {

// EncodeFormValue encodes bytes for use as a value in an application/x-www-form-urlencoded body. ASCII letters and
// digits and ~ ! * ( ) ' stay as they are; every other byte becomes '%' and two lowercase hexadecimal digits.
std::string EncodeFormValue(std::string_view text);

}  // namespace zt
