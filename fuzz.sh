#!/usr/bin/env bash
# Runs every fuzz target, or those that are named, for so many seconds each (60), as many side by side as there are cores.
# Fails when one finds something; the input is then in build/fuzz/found/, and belongs into the tables of the unit tests.
#   ./fuzz.sh [--coverage] [SECONDS] [TARGET...]
# What inputs reached stays in build/fuzz/corpus/TARGET; a round of half a minute or more first minimises it. --coverage
# shows afterwards which lines of the parsers it reaches, and which it does not; with 0 seconds, of the corpus as it is.
set -euo pipefail
cd "$(dirname "$0")"
coverage=
if [ "${1:-}" = --coverage ]; then
  coverage=1
  shift
fi
export seconds=${1:-60}
targets=("${@:2}")
[ ${#targets[@]} -gt 0 ] || mapfile -t targets < <(basename -a -s .cpp fuzz/fuzz_*.cpp)
# Each conversion of a time would look for the system's time zone.
export TZ=UTC0

build() {
  cmake -G Ninja -S fuzz -B "$1" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ "${@:2}" >/dev/null
  cmake --build "$1" --target "${targets[@]}" >/dev/null
}

tools/install-packages.sh build test
tools/fetch-tinyxml2.sh
build build/fuzz
mkdir -p build/fuzz/found

# The seeds are kept one a line, as hexadecimal text or with the escapes of printf.
for target in "${targets[@]}"; do
  mkdir -p "build/fuzz/corpus/$target"
  number=0
  while read -r line; do
    number=$((number + 1))
    xxd -r -p <<<"$line" >"build/fuzz/corpus/$target/seed-$number"
  done < <(cat "fuzz/seeds/$target.hex" 2>/dev/null)
  while read -r line; do
    number=$((number + 1))
    printf '%b' "$line" >"build/fuzz/corpus/$target/seed-$number"
  done < <(cat "fuzz/seeds/$target.txt" 2>/dev/null)
done

run_target() {
  corpus=build/fuzz/corpus/$1
  log=build/fuzz/$1.log
  limits=(-max_len=4096 -timeout=10 -print_funcs=0 -rss_limit_mb=1024 -artifact_prefix="build/fuzz/found/$1-")
  if [ "$seconds" -ge 30 ]; then
    rm -rf "$corpus.new"
    mkdir "$corpus.new"
    if "build/fuzz/$1" "${limits[@]}" -merge=1 "$corpus.new" "$corpus" >"$log" 2>&1; then
      rm -r "$corpus"
      mv "$corpus.new" "$corpus"
    fi
  fi
  status=0
  "build/fuzz/$1" "${limits[@]}" -max_total_time="$seconds" -print_final_stats=1 "$corpus" >"$log" 2>&1 || status=$?
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  echo "$1: ${executions:-no} executions, $([ $status -eq 0 ] && echo nothing found || echo "FAILED, see $log")"
  return $status
}
export -f run_target
[ "$seconds" -eq 0 ] || printf '%s\n' "${targets[@]}" | xargs -P "$(nproc)" -I{} bash -euc 'run_target {}'
[ -n "$coverage" ] || exit 0

tools/install-packages.sh llvm
build build/fuzz/coverage -DZT_COVERAGE=ON
objects=()
for target in "${targets[@]}"; do
  LLVM_PROFILE_FILE="build/fuzz/coverage/$target.profraw" "build/fuzz/coverage/$target" -runs=0 -max_len=4096 \
    "build/fuzz/corpus/$target" >/dev/null 2>&1
  objects+=(-object "build/fuzz/coverage/$target")
done
(cd build/fuzz/coverage && llvm-profdata merge -o all.profdata "${targets[@]/%/.profraw}")
# Where a compiler cache makes paths relative, sources have the build folder in their names.
llvm-cov export -format=lcov -instr-profile=build/fuzz/coverage/all.profdata "${objects[@]:1}" 2>/dev/null |
  awk -v root="$PWD/" -F'[:,]' '
    NR == FNR { isParser[$1]; next }
    /^SF:/ { source = $2; sub(/.*\/\.\.\//, "", source); sub(root, "", source); lines = reached = 0; missed = "" }
    /^DA:/ { ++lines; if ($3 > 0) ++reached; else missed = missed " " $2 }
    /^end_of_record/ && source in isParser {
      printf "%6.2f %%  %-40s %s\n", 100 * reached / lines, source, missed == "" ? "" : "not:" missed
      allLines += lines; allReached += reached
    }
    END { printf "%6.2f %%  all %d lines\n", 100 * allReached / allLines, allLines }' fuzz/parsers.txt -
