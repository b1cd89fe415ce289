#!/usr/bin/env bash
# Builds everything and passes every test; leaves the built agent in dist/. Prints what it does; fails when anything fails.
#   ./test.sh            all of it
#   ./test.sh PATTERN    only the tests whose name matches the regular expression; fails when there is none
set -euo pipefail
cd "$(dirname "$0")"
only=()
[ $# -eq 0 ] || only=(-R "$1")

say() { printf '\n== %s\n' "$*"; }

say "What it takes"
tools/check-room.sh . 2000 "two builds and the tests"
tools/install-packages.sh build world printer test
ZT_WORLD=$(sim/bin/in-namespace --which)
export ZT_WORLD
sim/bin/in-namespace --check udp/161 tcp/80 tcp/443 tcp/8080
tools/fetch-tinyxml2.sh

say "Format"
./format.sh --check

say "Native build, with sanitizers"
tools/build.sh native

say "Windows build, into dist/"
tools/build.sh windows
rm -rf dist
cmake --install build/windows >/dev/null

if [ $# -gt 0 ] && ! { ctest --preset native -N -R "$1" && ctest --preset windows -N -R "$1"; } | grep '^ *Test *#' >/dev/null; then
  echo "No test has a name that matches '$1'" >&2
  exit 1
fi

logs=(build/{native,windows}/Testing/Temporary/LastTest.log)
rm -f "${logs[@]}"
say "Tests of the native build"
ctest --preset native "${only[@]}"

if [ $# -eq 0 ]; then
  say "The fuzzers, for a moment"
  ./fuzz.sh 1
fi

say "Tests of the Windows build, under Wine, and of the agent from end to end"
ctest --preset windows "${only[@]}"

# Only where no network of its own is to be had for a test.
skipped=$(cat "${logs[@]}" 2>/dev/null | sed -n 's/.*SKIPPED HERE: //p' | sort -u || true)
if [ -n "$skipped" ]; then
  say "All that ran has passed. Skipped here, as this machine allows no network of a test's own: $(wc -l <<<"$skipped")"
  echo "$skipped"
fi
