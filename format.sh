#!/usr/bin/env bash
# Formats every C++ source; with --check it changes nothing and fails when a file is not formatted.
set -euo pipefail
cd "$(dirname "$0")"
mode=(-i)
[ "${1:-}" = --check ] && mode=(--dry-run --Werror)
git ls-files -z -- '*.h' '*.cpp' | xargs -0 clang-format --style=file "${mode[@]}"
