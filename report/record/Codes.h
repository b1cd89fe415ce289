#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zt {

// Codes are the short texts, each beginning with "/", that a reading gathers about what it lacks or why it fails:
// "/no Count el/no tlevel". They go to the trace log, for support.
class Codes {
 public:
  void Add(std::string_view code);

  // Replace makes the code the only one.
  void Replace(std::string_view code);

  // Count returns how many codes there are; that of two moments tells whether any came between them.
  std::size_t Count() const { return count_; }

  // Text returns all codes, one behind the other.
  const std::string& Text() const { return text_; }

 private:
  std::string text_;
  std::size_t count_ = 0;
};

}  // namespace zt
