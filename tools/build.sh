#!/usr/bin/env bash
# Configures and builds a preset and shows one line of progress; what the compiler says only when something fails.
#   tools/build.sh PRESET [-DNAME=VALUE...] [TARGET...]
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
shift
definitions=()
while [[ ${1-} == -D* ]]; do
  definitions+=("$1")
  shift
done
targets=()
[ $# -eq 0 ] || targets=(--target "$@")
log=build/$preset.log
mkdir -p build

cmake --preset "$preset" "${definitions[@]}" >"$log" 2>&1 || {
  cat "$log"
  echo "The build tree $preset cannot be made; see above." >&2
  exit 1
}

# On a terminal the line counts; elsewhere it is written once.
status=0
NINJA_STATUS='[%f/%t] ' cmake --build --preset "$preset" "${targets[@]}" 2>&1 | tee "$log" | {
  steps="nothing to do"
  while IFS= read -r line; do
    [[ $line =~ ^\[([0-9]+)/([0-9]+)\] ]] || continue
    steps="${BASH_REMATCH[1]} of ${BASH_REMATCH[2]} steps"
    [ ! -t 1 ] || printf '\rBuilding %s: %s' "$preset" "$steps"
  done
  [ ! -t 1 ] || printf '\r'
  printf 'Building %s: %s\n' "$preset" "$steps"
} || status=$?
if [ $status -ne 0 ]; then
  grep -vE '^\[[0-9]+/[0-9]+\]' "$log"
  echo "The build ($preset) failed; what was said is above, and in $log." >&2
  exit 1
fi
