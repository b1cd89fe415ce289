// bench_count: runs each codec case 1000 times inside measured(), for callgrind to count. With a number it runs only
// that case; without, it prints how many there are and their names.

#include <cstdio>
#include <cstdlib>

#include "Cases.h"

namespace {

constexpr int kRounds = 1000;

}  // namespace

/// Not static, so that callgrind knows it by its name.
[[gnu::noinline]] void measured(const Case& one) {
  for (int i = 0; i < kRounds; ++i) one.run();
}

int main(int argc, char** argv) {
  const auto cases = codecCases();
  if (argc < 2) {
    for (const Case& one : cases) std::printf("%s / %s\n", one.what.c_str(), one.who.c_str());
    return 0;
  }
  const Case& one = cases.at(static_cast<std::size_t>(std::atoi(argv[1])));
  one.run();  // what happens once only is not counted
  measured(one);
  return 0;
}
