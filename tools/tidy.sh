#!/usr/bin/env bash
# Runs clang-tidy over the product's sources that the native build compiles; fails when it finds anything.
#   tools/tidy.sh [COMMIT]   those that differ from the commit, by default the one before HEAD, or include what does
#   tools/tidy.sh --all      all of them
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install-packages.sh clang-tidy
[ -f build/native/compile_commands.json ] || cmake --preset native >/dev/null
mapfile -t compiled < <(sed -n "s,^ *\"file\": \"$PWD/\(.*\.cpp\)\".*,\1,p" build/native/compile_commands.json | grep -E '^(agent|base|printer|protection|report|server|snmp|testdialog)/' | sort -u)

if [ "${1-}" = --all ] || ! git rev-parse -q --verify "${1:-HEAD~1}^{commit}" >/dev/null; then
  sources=("${compiled[@]}")
else
  sources=()
  while IFS= read -r changed; do
    for source in "${compiled[@]}"; do
      if [ "$source" = "$changed" ] || { [[ $changed == *.h ]] && grep -qF "${changed##*/}\"" "$source"; }; then
        sources+=("$source")
      fi
    done
  done < <(git diff --name-only "${1:-HEAD~1}" -- '*.h' '*.cpp')
fi
[ ${#sources[@]} -gt 0 ] || exit 0
printf '%s\n' "${sources[@]}" | sort -u | xargs -P "$(nproc)" -n 4 clang-tidy -p build/native --quiet
