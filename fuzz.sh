#!/usr/bin/env bash
# Runs every fuzz target for so many seconds each (60), as many side by side as there are cores. Fails when one finds
# something; the input is then in build/fuzz/found/, and belongs into the tables of the unit tests.
#   ./fuzz.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")"
export seconds=${1:-60}

tools/install-packages.sh build test
cmake -G Ninja -S fuzz -B build/fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ >/dev/null
cmake --build build/fuzz >/dev/null
mkdir -p build/fuzz/found

# The seeds are kept as hexadecimal text, one a line; the corpus grows with each run.
for seeds in fuzz/seeds/*.hex; do
  target=$(basename "$seeds" .hex)
  mkdir -p "build/fuzz/corpus/$target"
  number=0
  while read -r line; do
    number=$((number + 1))
    xxd -r -p <<<"$line" >"build/fuzz/corpus/$target/seed-$number"
  done <"$seeds"
done

run_target() {
  log=build/fuzz/$1.log
  status=0
  "build/fuzz/$1" -max_total_time="$seconds" -max_len=2300 -artifact_prefix="build/fuzz/found/$1-" -print_final_stats=1 \
    "build/fuzz/corpus/$1" >"$log" 2>&1 || status=$?
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  echo "$1: ${executions:-no} executions, $([ $status -eq 0 ] && echo nothing found || echo "FAILED, see $log")"
  return $status
}
export -f run_target
basename -s .hex fuzz/seeds/*.hex | xargs -P "$(nproc)" -I{} bash -euc 'run_target {}'
