#!/usr/bin/env bash
# Runs cppcheck over the product's sources, and clang-tidy over those that the native build compiles; fails when one finds
# anything.
#   tools/tidy.sh [COMMIT]   those that differ from the commit, by default the one before HEAD, or include what does
#   tools/tidy.sh --all      all of them
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install-packages.sh clang-tidy cppcheck
# It does not know functions whose body is a try block, nor that a Piece is a view, which is handed on by value; a
# constructor that fills its object by a setter means its own.
cppcheck --std=c++20 --language=c++ --enable=warning,performance,portability --inline-suppr --quiet -j "$(nproc)" \
  --suppress='syntaxError:snmp/src/*' --suppress='passedByValue:testdialog/*' --suppress=virtualCallInConstructor --error-exitcode=1 -DZTSNMP_API= -I snmp/include -I snmp/src \
  agent base printer protection report server snmp testdialog
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
