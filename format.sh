#!/usr/bin/env bash
# Formats every C++ and Python source, and says what is wrong with Python sources and shell scripts; with --check it
# changes nothing, and fails when a file is not formatted, too.
set -euo pipefail
cd "$(dirname "$0")"
cpp=(-i)
python=(--quiet)
if [ "${1:-}" = --check ]; then
  cpp=(--dry-run --Werror)
  python=(--quiet --check --diff)
fi
# The checkout may be another user's, as in a container that it is mounted into.
git() { command git -c safe.directory="$PWD" "$@"; }
git rev-parse >/dev/null 2>&1 || {
  echo "This is no checkout of git, which tells the sources from what was built." >&2
  exit 1
}
git ls-files -z -- '*.h' '*.cpp' | xargs -0 clang-format --style=file "${cpp[@]}"
git ls-files -z -- '*.py' | xargs -0 black "${python[@]}"
git ls-files -z -- '*.py' | xargs -0 flake8
# A shell script may have a name without a suffix; its first line tells.
git grep -zlE '^#!.*\b(ba)?sh$' | xargs -0 shellcheck
