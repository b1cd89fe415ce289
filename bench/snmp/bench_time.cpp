// bench_time [network] [Google Benchmark's options]: the time of each case.

#include <benchmark/benchmark.h>

#include <cstring>

#include "Cases.h"

int main(int argc, char** argv) {
  const bool network = argc > 1 && std::strcmp(argv[1], "network") == 0;
  const auto cases = network ? networkCases() : codecCases();
  for (const Case& one : cases) {
    benchmark::RegisterBenchmark((one.what + " / " + one.who).c_str(), [&one](benchmark::State& state) {
      for (auto _ : state) one.run();
    });
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
