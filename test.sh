#!/usr/bin/env bash
# Builds everything and passes every test; leaves the built agent in dist/. Prints what it does; fails when anything fails.
#   ./test.sh            all of it
#   ./test.sh PATTERN    only the tests whose name matches the regular expression; fails when there is none
set -euo pipefail
cd "$(dirname "$0")"
only=()
[ $# -eq 0 ] || only=(-R "$1")

say() { printf '\n== %s\n' "$*"; }

say "Packages and sources"
tools/install-packages.sh
tools/fetch-tinyxml2.sh

say "Format"
./format.sh --check

say "Native build, with sanitizers"
cmake --preset native >/dev/null
cmake --build --preset native

say "Windows build, into dist/"
cmake --preset windows >/dev/null
cmake --build --preset windows
rm -rf dist
cmake --install build/windows >/dev/null

if [ $# -gt 0 ] && ! { ctest --preset native -N -R "$1" && ctest --preset windows -N -R "$1"; } | grep '^ *Test *#' >/dev/null; then
  echo "No test has a name that matches '$1'" >&2
  exit 1
fi

say "Tests of the native build"
ctest --preset native "${only[@]}"

if [ $# -eq 0 ]; then
  say "The fuzzers, for a moment"
  ./fuzz.sh 3
fi

say "Tests of the Windows build, under Wine, and of the agent from end to end"
ctest --preset windows "${only[@]}"
